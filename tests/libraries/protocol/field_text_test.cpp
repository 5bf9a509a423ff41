// SPDX-License-Identifier: Apache-2.0
#include "protocol/field_text.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace buttondriver {
namespace {

const Field &field_of(std::uint32_t opcode, std::string_view name) {
  const MessageType *type = find_message_type(opcode);
  for (std::size_t i = 0; i < type->fieldCount(); ++i)
    if (type->fields[i].name == name)
      return type->fields[i];
  throw std::invalid_argument(std::string(name));
}

TEST(FieldTextTest, says_the_range_and_the_named_values_in_words) {
  struct Row {
    std::uint32_t opcode;
    const char *field;
    const char *text;
  };
  constexpr Row rows[] = {
      {17, "opcode", "which message this is"},
      {17, "button_id", "0 to 23; -1: all buttons"},
      {17, "state", "1: on; -1: blinking; else off"},
      {17, "time", "length of each blink phase in milliseconds; not 0 when blinking"},
      {15, "screen_id", "0, 1 or 2; -1: all screens"},
      {15, "flag", "0: black on white; else white on black"},
      {18, "_back_colour", "0xRRGGBB"},
      {21, "button_id", "0 to 31"},
      {22, "button_id", "0 or 1"},
      {22, "state", "0: off; 1: on"},
      {4, "button_id", "0 to 299; 0xFFFFFFFF: all buttons"},
      {4, "value_1", "first channel value"},
      {4, "reserved", "always 0"},
      {6, "size", "always 120"},
      {6, "image_id", "0 to 22: shared by all connections; from 23 on: private to the connection"},
      {6, "image", "24 rows of 40 one-bit pixels, 5 bytes a row, most significant bit leftmost"},
      {8, "value", "0: with parameter 8; 1: with parameter 9"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(field_text(field_of(row.opcode, row.field)), row.text) << row.opcode << ' ' << row.field;
}

TEST(FieldRangeTest, is_that_of_the_type_where_any_number_will_do) {
  EXPECT_EQ(field_of(17, "time").lowest, -2147483648LL);
  EXPECT_EQ(field_of(17, "time").highest, 2147483647LL);
  EXPECT_EQ(field_of(14, "value_1").lowest, 0);
  EXPECT_EQ(field_of(14, "value_1").highest, 4294967295LL);
  EXPECT_EQ(field_of(4, "value_1").highest, 255);
}

TEST(FieldRangeTest, does_not_hold_what_names_all_of_them) {
  const Field &button = field_of(4, "button_id");
  EXPECT_EQ(button.lowest, 0);
  EXPECT_EQ(button.highest, 299);
  ASSERT_EQ(button.namedCount(), 1U);
  EXPECT_EQ(button.named[0].first, 4294967295LL);
  EXPECT_EQ(button.named[0].last, 4294967295LL);
}

} // namespace
} // namespace buttondriver
