// SPDX-License-Identifier: Apache-2.0
#include "protocol/framing.h"

#include <gtest/gtest.h>

namespace buttondriver {
namespace {

TEST(FramingTest, prefix_is_the_big_endian_length) {
  EXPECT_EQ(frame_prefix(132), (std::array<std::uint8_t, 4>{0, 0, 0, 0x84}));
  EXPECT_EQ(frame_prefix(0x01020304), (std::array<std::uint8_t, 4>{1, 2, 3, 4}));
}

TEST(FramingTest, needed_bytes_wrap_in_32_bits) {
  EXPECT_EQ(frame_bytes_needed(0), 4U);
  EXPECT_EQ(frame_bytes_needed(0xFFFFFFFBU), 0xFFFFFFFFU);
  EXPECT_EQ(frame_bytes_needed(0xFFFFFFFCU), 0U);
  EXPECT_EQ(frame_bytes_needed(0xFFFFFFFFU), 3U);
}

} // namespace
} // namespace buttondriver
