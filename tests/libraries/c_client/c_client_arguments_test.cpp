// SPDX-License-Identifier: Apache-2.0
// Arguments that are refused: nothing is built, and nothing is sent.

#include "open_client.h"

#include <functional>
#include <set>
#include <string>

namespace buttondriver::test {
namespace {

struct ArgumentRow {
  const char *name;
  std::function<buttondriver_result(buttondriver_message *)> encode;
  std::function<buttondriver_result(buttondriver_client *)> send;
  buttondriver_result result;
};

void PrintTo(const ArgumentRow &row, std::ostream *stream) { *stream << row.name; }

const char image[121] = {};

#define CALLS(name, ...)                                                                                               \
  [](buttondriver_message *place) { return buttondriver_encode_##name(place, __VA_ARGS__); },                          \
      [](buttondriver_client *place) { return buttondriver_##name(place, __VA_ARGS__); }

const ArgumentRow argument_rows[] = {
    {"text_on_screen_3", CALLS(text, 3, 0, "x"), BUTTONDRIVER_OUT_OF_RANGE},
    {"text_on_screen_minus_2", CALLS(text, -2, 0, "x"), BUTTONDRIVER_OUT_OF_RANGE},
    {"text_on_line_minus_1", CALLS(text, 0, -1, "x"), BUTTONDRIVER_OUT_OF_RANGE},
    {"null_text", CALLS(text, 0, 0, nullptr), BUTTONDRIVER_NULL_POINTER},
    {"inverse_text_on_screen_3", CALLS(text_inverse, 3, 0, "x"), BUTTONDRIVER_OUT_OF_RANGE},
    {"null_inverse_text", CALLS(text_inverse, 0, 0, nullptr), BUTTONDRIVER_NULL_POINTER},
    {"part_on_screen_3", CALLS(text_part, 3, 0, 0, 1, "x", 0, 0), BUTTONDRIVER_OUT_OF_RANGE},
    {"part_on_line_minus_1", CALLS(text_part, 0, -1, 0, 1, "x", 0, 0), BUTTONDRIVER_OUT_OF_RANGE},
    {"part_from_minus_1", CALLS(text_part, 0, 0, -1, 1, "x", 0, 0), BUTTONDRIVER_OUT_OF_RANGE},
    {"part_of_minus_1", CALLS(text_part, 0, 0, 0, -1, "x", 0, 0), BUTTONDRIVER_OUT_OF_RANGE},
    {"part_in_too_bright_a_colour", CALLS(text_part, 0, 0, 0, 1, "x", 0x1000000, 0), BUTTONDRIVER_OUT_OF_RANGE},
    {"part_on_too_bright_a_colour", CALLS(text_part, 0, 0, 0, 1, "x", 0, 0x1000000), BUTTONDRIVER_OUT_OF_RANGE},
    {"null_part", CALLS(text_part, 0, 0, 0, 1, nullptr, 0, 0), BUTTONDRIVER_NULL_POINTER},
    {"null_picture", CALLS(picture, 0, 0, 0, nullptr, 70), BUTTONDRIVER_NULL_POINTER},
    {"blackout_of_screen_3", CALLS(blackout, 3), BUTTONDRIVER_OUT_OF_RANGE},
    {"blackout_of_screen_minus_2", CALLS(blackout, -2), BUTTONDRIVER_OUT_OF_RANGE},
    {"led_24", CALLS(led, 24, 1), BUTTONDRIVER_OUT_OF_RANGE},
    {"led_minus_2", CALLS(led, -2, 1), BUTTONDRIVER_OUT_OF_RANGE},
    {"led_in_state_2", CALLS(led, 0, 2), BUTTONDRIVER_OUT_OF_RANGE},
    {"led_in_state_minus_1", CALLS(led, 0, -1), BUTTONDRIVER_OUT_OF_RANGE},
    {"blinking_led_24", CALLS(led_blink, 24, 100), BUTTONDRIVER_OUT_OF_RANGE},
    {"blinking_for_no_time", CALLS(led_blink, 0, 0), BUTTONDRIVER_OUT_OF_RANGE},
    {"blinking_for_minus_1", CALLS(led_blink, 0, -1), BUTTONDRIVER_OUT_OF_RANGE},
    {"status_32", CALLS(status, 32, 1), BUTTONDRIVER_OUT_OF_RANGE},
    {"status_minus_1", CALLS(status, -1, 1), BUTTONDRIVER_OUT_OF_RANGE},
    {"status_in_state_2", CALLS(status, 0, 2), BUTTONDRIVER_OUT_OF_RANGE},
    {"toggle_2", CALLS(toggle, 2, 1), BUTTONDRIVER_OUT_OF_RANGE},
    {"toggle_minus_1", CALLS(toggle, -1, 1), BUTTONDRIVER_OUT_OF_RANGE},
    {"toggle_in_state_minus_1", CALLS(toggle, 0, -1), BUTTONDRIVER_OUT_OF_RANGE},
    {"image_minus_1", CALLS(image, -1, image, 120), BUTTONDRIVER_OUT_OF_RANGE},
    {"image_of_119_bytes", CALLS(image, 0, image, 119), BUTTONDRIVER_OUT_OF_RANGE},
    {"image_of_121_bytes", CALLS(image, 0, image, 121), BUTTONDRIVER_OUT_OF_RANGE},
    {"null_image", CALLS(image, 0, nullptr, 120), BUTTONDRIVER_NULL_POINTER},
};

class CClientArgumentsTest : public testing::TestWithParam<ArgumentRow> {};

TEST_P(CClientArgumentsTest, are_refused_and_nothing_is_built_or_sent) {
  std::string room(256, '#');
  buttondriver_message message{room.data(), room.size(), 77};
  EXPECT_EQ(GetParam().encode(&message), GetParam().result);
  EXPECT_EQ(message.size, 77U);
  EXPECT_EQ(room, std::string(256, '#'));

  ScriptedPeer peer;
  OpenClient client(peer);
  EXPECT_EQ(GetParam().send(client.get()), GetParam().result);
  EXPECT_TRUE(client.isOpen());
  buttondriver_close(client.get());
  EXPECT_EQ(peer.read_to_end(), "");
}

INSTANTIATE_TEST_SUITE_P(Arguments, CClientArgumentsTest, testing::ValuesIn(argument_rows),
                         [](const auto &row) { return row.param.name; });

// The daemon skips a message of more than 16 MiB: 16,777,216 bytes with the head and the NUL.
TEST(CClientLongTextTest, is_built_up_to_the_longest_message_that_the_daemon_takes) {
  std::string room(16777216, '#');
  buttondriver_message message{room.data(), room.size(), 0};
  std::string text(16777216 - 20 - 1, 'x');
  EXPECT_EQ(buttondriver_encode_text(&message, 0, 0, text.c_str()), BUTTONDRIVER_OK);
  EXPECT_EQ(message.size, 16777216U);
  EXPECT_EQ(room.substr(16, 6), std::string("\x00\xff\xff\xecxx", 6));
  EXPECT_EQ(room.substr(16777216 - 2), std::string("x\0", 2));

  text.resize(16777216 - 32 - 1);
  EXPECT_EQ(buttondriver_encode_text_part(&message, 0, 0, 0, 1, text.c_str(), 0, 0), BUTTONDRIVER_OK);
  EXPECT_EQ(message.size, 16777216U);
}

TEST(CClientLongTextTest, is_refused_one_byte_beyond) {
  std::string room(17000000, '#');
  buttondriver_message message{room.data(), room.size(), 77};
  const std::string text(16777216 - 20, 'x');
  EXPECT_EQ(buttondriver_encode_text(&message, 0, 0, text.c_str()), BUTTONDRIVER_TEXT_TOO_LONG);
  EXPECT_EQ(buttondriver_encode_text_inverse(&message, 0, 0, text.c_str()), BUTTONDRIVER_TEXT_TOO_LONG);
  EXPECT_EQ(buttondriver_encode_text_part(&message, 0, 0, 0, 1, text.c_str() + 12, 0, 0), BUTTONDRIVER_TEXT_TOO_LONG);
  EXPECT_EQ(message.size, 77U);
  EXPECT_EQ(room.front(), '#');
}

TEST(CClientErrorTextTest, is_another_one_for_each_result_and_there_for_every_number) {
  std::set<std::string> texts;
  for (int result = BUTTONDRIVER_STRANGE_ANSWER - 1; result <= BUTTONDRIVER_OK; ++result)
    texts.insert(buttondriver_error_text(static_cast<buttondriver_result>(result)));
  EXPECT_EQ(texts.size(), 14U);
  EXPECT_STREQ(buttondriver_error_text(BUTTONDRIVER_CONNECTION_LOST), "the daemon is gone");
  EXPECT_STREQ(buttondriver_error_text(static_cast<buttondriver_result>(1)), "this is no result of buttondriver");
}

} // namespace
} // namespace buttondriver::test
