// SPDX-License-Identifier: Apache-2.0
#include "bytes/byte_view.h"

#include <gtest/gtest.h>

#include <array>

namespace buttondriver {
namespace {

constexpr std::array<std::uint8_t, 6> some_bytes{0x11, 0x22, 0x33, 0x44, 0x55, 0x66};
constexpr ByteView view(some_bytes.data(), some_bytes.size());

TEST(ByteViewTest, reads_each_byte_order) {
  EXPECT_EQ(view.bigEndian32(0), 0x11223344U);
  EXPECT_EQ(view.littleEndian32(1), 0x55443322U);
  EXPECT_EQ(view.littleEndian16(4), 0x6655U);
}

TEST(ByteViewTest, bytes_past_the_end_read_as_zero) {
  EXPECT_EQ(view.bigEndian32(4), 0x55660000U);
  EXPECT_EQ(view.littleEndian32(5), 0x00000066U);
  EXPECT_EQ(view.u8(6), 0U);
  EXPECT_EQ(view.u8(~std::uint64_t{0}), 0U);
}

TEST(ByteViewTest, copy_fills_up_with_zeros) {
  std::array<std::uint8_t, 8> copy{};
  copy.fill(0xFF);
  view.copyTo(copy.data(), copy.size());
  EXPECT_EQ(copy, (std::array<std::uint8_t, 8>{0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0, 0}));
}

TEST(ByteViewTest, no_bytes_are_all_zeros) {
  const ByteView none;
  EXPECT_TRUE(none.empty());
  EXPECT_EQ(none.bigEndian32(0), 0U);
  EXPECT_TRUE(ByteView(static_cast<const char *>(nullptr), 5).empty());
  EXPECT_EQ(none.text(0, 10), "");
}

TEST(ByteViewTest, text_ends_at_the_nul_the_count_or_the_end) {
  const ByteView text("abc\0def", 7);
  EXPECT_EQ(text.text(0, 7), "abc");
  EXPECT_EQ(text.text(0, 2), "ab");
  EXPECT_EQ(text.text(4, 0xFFFFFFFF), "def");
  EXPECT_EQ(text.text(4, 0), "");
  EXPECT_EQ(text.text(99, 5), "");
}

} // namespace
} // namespace buttondriver
