// SPDX-License-Identifier: Apache-2.0
#include "protocol/decode.h"

#include "support/hex.h"

#include <gtest/gtest.h>

namespace buttondriver {
namespace {

using test::from_hex;

ByteView view_of(const std::string &bytes) { return {bytes.data(), bytes.size()}; }

TEST(DecodeTest, takes_fields_at_their_offsets_and_ignores_what_follows) {
  const std::string bytes = from_hex("00000011 00000005 ffffffff 000001f4 deadbeef");
  const auto message = decode<BMS_SetLEDState>(view_of(bytes));
  EXPECT_EQ(message.button_id, 5);
  EXPECT_EQ(message.state, -1);
  EXPECT_EQ(message.time, 500);
}

TEST(DecodeTest, missing_bytes_read_as_zero_even_inside_a_field) {
  const std::string bytes = from_hex("00000011 00000005 0102");
  const auto message = decode<BMS_SetLEDState>(view_of(bytes));
  EXPECT_EQ(message.button_id, 5);
  EXPECT_EQ(message.state, 0x01020000);
  EXPECT_EQ(message.time, 0);
}

TEST(DecodeTest, leaves_the_message_as_it_was) {
  const std::string bytes = from_hex("00000010 00000002");
  EXPECT_EQ(decode<BMS_BlackoutScreen>(view_of(bytes)).screen_id, 2);
  EXPECT_EQ(bytes, from_hex("00000010 00000002"));
}

TEST(DecodeTest, an_empty_message_is_all_zeros) {
  const auto message = decode<BMS_TFTSubTextLine>(ByteView());
  EXPECT_EQ(message._screen_id, 0);
  EXPECT_EQ(message._back_colour, 0U);
  EXPECT_EQ(message.n, 0U);
}

} // namespace
} // namespace buttondriver
