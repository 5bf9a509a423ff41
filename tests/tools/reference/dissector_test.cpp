// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/dissector.h"

#include <gmock/gmock.h>

#include <string>

namespace buttondriver::documents {
namespace {

using testing::HasSubstr;

TEST(FilterNameTest, is_in_small_letters_with_words_parted_by_underscores) {
  struct Row {
    const char *name;
    const char *expected;
  };
  constexpr Row rows[] = {
      {"Ping", "ping"},
      {"SetLEDState", "set_led_state"},
      {"TFTSubTextLine", "tft_sub_text_line"},
      {"DrawTFTImage", "draw_tft_image"},
      {"SetLEDStatusIndicator", "set_led_status_indicator"},
      {"TYPE_NULL_MESSAGE", "type_null_message"},
      {"_screen_id", "screen_id"},
      {"value_1", "value_1"},
      {"", ""},
  };
  for (const Row &row : rows)
    EXPECT_EQ(filter_name(row.name), row.expected);
}

TEST(DissectorTest, names_the_fields_of_a_fixed_message) {
  EXPECT_THAT(
      wireshark_dissector(),
      HasSubstr("  [21] = {\n"
                "    name = \"BMS_SetLEDStatusIndicator\",\n"
                "    fields = {\n"
                "      { width = 4, proto_field = ProtoField.int32(\"buttondriver.set_led_status_indicator.button_id\","
                " \"button_id\", base.DEC, nil, nil, \"0 to 31\") },\n"
                "      { width = 4, proto_field = ProtoField.int32(\"buttondriver.set_led_status_indicator.state\","
                " \"state\", base.DEC, nil, nil, \"1: on; else off\") },\n"
                "    },\n"
                "  },\n"));
}

TEST(DissectorTest, knows_where_each_variable_part_has_its_count) {
  const std::string script = wireshark_dissector();
  for (const char *part : {
           "variable = { kind = \"text\", width = 1, count_offset = 16,\n      proto_field = "
           "ProtoField.string(\"buttondriver.tft_text_line.text\"",
           "variable = { kind = \"text\", width = 1, count_offset = 28,\n      proto_field = "
           "ProtoField.string(\"buttondriver.tft_sub_text_line.text\"",
           "variable = { kind = \"bytes\", width = 1, count_offset = 16,\n      proto_field = "
           "ProtoField.bytes(\"buttondriver.draw_tft_image.image\"",
           "variable = { kind = \"numbers\", width = 4, count_offset = 20,\n      proto_field = "
           "ProtoField.uint32(\"buttondriver.set_button_image_list.image_ids\"",
       })
    EXPECT_THAT(script, HasSubstr(part));
}

} // namespace
} // namespace buttondriver::documents
