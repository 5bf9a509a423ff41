// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/topic_commands.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace buttondriver::bridge {
namespace {

using namespace std::string_literals;

struct Row {
  const char *tail;
  std::string payload;
  std::string text;
};

const std::string not_led = "the payload must be 'on', 'off' or 'blink MS' with 1 to 2147483647 milliseconds, not ";
const std::string not_lamp = "the payload must be 'on' or 'off', not ";
const std::string not_object = R"(the payload must be a JSON object such as {"line":0,"offset":3,"text":"12.5"}, not )";
const std::string no_key = "is no key of a part; they are line, offset, text, chars, colour and background";
const std::string missing = "is missing; a part has line, offset and text";

const Row word_rows[] = {
    {"led/5", "ON", not_led + "'ON'"},
    {"led/5", "on\n", not_led + "'on\\x0a'"},
    {"led/5", "1", not_led + "'1'"},
    {"led/5", "blink", not_led + "'blink'"},
    {"led/5", "blank 5", not_led + "'blank 5'"},
    {"led/5", "\x1f ~\x7f", not_led + "'\\x1f ~\\x7f'"},
    {"led/5", "blink 0", not_led + "'blink 0'"},
    {"led/5", "blink -5", not_led + "'blink -5'"},
    {"led/5", "blink  5", not_led + "'blink  5'"},
    {"led/5", "blink 5 ", not_led + "'blink 5 '"},
    {"led/5", "blink 2147483648", not_led + "'blink 2147483648'"},
    {"led/5", "on\0"s, not_led + "'on\\x00'"},
    {"led/5", std::string(64, 'x'), not_led + "'" + std::string(60, 'x') + "...'"},
    {"led/5", std::string(65, 'x'), "the payload has 65 bytes; here it may have 64 at most"},
    {"status/5", "blink 5", not_lamp + "'blink 5'"},
    {"toggle/1", "true", not_lamp + "'true'"},
    {"toggle/1", "\xC3\xA4", not_lamp + "'\\xc3\\xa4'"},
    {"blackout", "on", "the payload must be 'now', not 'on'"},
    {"blackout", "now\n", "the payload must be 'now', not 'now\\x0a'"},
    {"blackout", "not", "the payload must be 'now', not 'not'"},
    {"screen/1/blackout", "NOW", "the payload must be 'now', not 'NOW'"},
    {"reconfig", "1", "the payload must be 'now', not '1'"},
    {"reconfig", std::string(100000, '1'), "the payload has 100000 bytes; here it may have 64 at most"},
};

const std::string beyond = "; the panel has those of Latin-1 only, up to U+00FF";
const std::string no_line_feed = " of the text is a line feed; a line has none, each line has a topic";
std::string control(const std::string &place, const std::string &character) {
  return "character " + place + " of the text is the control character " + character + ", which the panel cannot show";
}
std::string no_utf8(const std::string &place) { return "byte " + place + " of the text is not UTF-8"; }

const Row text_rows[] = {
    {"screen/0/line/0", "5 \xE2\x82\xAC", "character 3 of the text is U+20AC" + beyond},
    {"screen/0/line/0", "\xC3\xA9\xC4\x80", "character 2 of the text is U+0100" + beyond},
    {"screen/0/line/0", "\xF0\x9F\x98\x80", "character 1 of the text is U+1F600" + beyond},
    {"screen/0/line/0", "a\nb", "character 2" + no_line_feed},
    {"screen/0/line/0", "a\0b"s, control("2", "U+0000")},
    {"screen/0/line/0", "\t", control("1", "U+0009")},
    {"screen/0/line/0", "\x1F", control("1", "U+001F")},
    {"screen/0/line/0", "\x7F", control("1", "U+007F")},
    {"screen/0/line/0", "\xC2\x80", control("1", "U+0080")},
    {"screen/0/line/0", "\xC2\x9F", control("1", "U+009F")},
    {"screen/0/line/0", "ab\xFF", no_utf8("3")},
    {"screen/0/line/0", "ab\x80", no_utf8("3")},
    {"screen/0/line/0", "\xC3", no_utf8("1")},
    {"screen/0/line/0", "\xC3x", no_utf8("1")},
    {"screen/0/line/0", "\xC1\xBF", no_utf8("1")},         // longer than it has to be
    {"screen/0/line/0", "\xE0\x9F\xBF", no_utf8("1")},     // the same
    {"screen/0/line/0", "\xF0\x8F\xBF\xBF", no_utf8("1")}, // the same
    {"screen/0/line/0", "\xED\xA0\x80", no_utf8("1")},     // half of a pair
    {"screen/0/line/0", "\xF4\x90\x80\x80", no_utf8("1")}, // past the last character
    {"screen/0/line/0", "\xF5\x80\x80\x80", no_utf8("1")},
    {"screen/0/line/0", "\xF8\x90\x80\x80", no_utf8("1")},
    {"screen/0/line/0", "\xED\xBF\xBF", no_utf8("1")}, // the last half of a pair, and what comes after it
    {"screen/0/line/0", "\xEE\x80\x80", "character 1 of the text is U+E000" + beyond},
    {"screen/0/line/0", "\xE2\x82", no_utf8("1")},
    {"screen/0/line/0/inverse", std::string(200, 'x') + "\n", "character 201" + no_line_feed},
    {"screen/0/line/0", std::string(4097, 'x'), "the payload has 4097 bytes; here it may have 4096 at most"},
};

const Row part_rows[] = {
    {"screen/0/part", "on", not_object + "'on' (it cannot be read on at byte 1)"},
    {"screen/0/part", "[1]", not_object + "'[1]'"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x")",
     not_object + R"('{"line":0,"offset":0,"text":"x"' (it cannot be read on at byte 31))"},
    {"screen/0/part", "{}", "'line' " + missing},
    {"screen/0/part", R"({"line":0,"text":"x"})", "'offset' " + missing},
    {"screen/0/part", R"({"line":0,"offset":0})", "'text' " + missing},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","color":"#ffffff"})", "'color' " + no_key},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","\u00e4\n":1})", "'\\xc3\\xa4\\x0a' " + no_key},
    {"screen/0/part", R"({"line":"0","offset":0,"text":"x"})", "'line' must be a whole number from 0 to 127, not '0'"},
    {"screen/0/part", R"({"line":1.5,"offset":0,"text":"x"})", "'line' must be a whole number from 0 to 127, not 1.5"},
    {"screen/0/part", R"({"line":-1,"offset":0,"text":"x"})", "'line' must be a whole number from 0 to 127, not -1"},
    {"screen/0/part", R"({"line":128,"offset":0,"text":"x"})", "'line' must be a whole number from 0 to 127, not 128"},
    {"screen/0/part", R"({"line":1e300,"offset":0,"text":"x"})",
     "'line' must be a whole number from 0 to 127, not 1e+300"},
    {"screen/0/part", R"({"line":0,"offset":128,"text":"x"})",
     "'offset' must be a whole number from 0 to 127, not 128"},
    {"screen/0/part", R"({"line":0,"offset":null,"text":"x"})",
     "'offset' must be a whole number from 0 to 127, not null"},
    {"screen/0/part", R"({"line":0,"offset":[],"text":"x"})",
     "'offset' must be a whole number from 0 to 127, not an array"},
    {"screen/0/part", R"({"line":0,"offset":{},"text":"x"})",
     "'offset' must be a whole number from 0 to 127, not an object"},
    {"screen/0/part", R"({"line":0,"offset":true,"text":"x"})",
     "'offset' must be a whole number from 0 to 127, not true"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":5})", "'text' must be a string, not 5"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x\ny"})", "'text': character 2" + no_line_feed},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x\u0000"})", "'text': " + control("2", "U+0000")},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"\u20ac"})", "'text': character 1 of the text is U+20AC" + beyond},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"a\ud83d\ude00"})",
     "'text': character 2 of the text is U+1F600" + beyond},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"\ud83d"})", "'text': character 1 of the text is U+D83D" + beyond},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"\ud83dx"})",
     "'text': character 1 of the text is U+D83D" + beyond},
    {"screen/0/part", R"({"line":0,"offset":0,"text":""})",
     "'text' must have 1 to 128 characters, not 0; 'chars' says how many to write"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":")" + std::string(129, 'x') + R"("})",
     "'text' must have 1 to 128 characters, not 129; 'chars' says how many to write"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","chars":0})",
     "'chars' must be a whole number from 1 to 128, not 0"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","chars":129})",
     "'chars' must be a whole number from 1 to 128, not 129"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","colour":"red"})",
     "'colour' must be a colour such as \"#ff8000\", not 'red'"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","colour":"ff8000"})",
     "'colour' must be a colour such as \"#ff8000\", not 'ff8000'"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","colour":"0ff8000"})",
     "'colour' must be a colour such as \"#ff8000\", not '0ff8000'"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","background":"#ff800g"})",
     "'background' must be a colour such as \"#ff8000\", not '#ff800g'"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","background":"#+12345"})",
     "'background' must be a colour such as \"#ff8000\", not '#+12345'"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","background":"#ff80000"})",
     "'background' must be a colour such as \"#ff8000\", not '#ff80000'"},
    {"screen/0/part", R"({"line":0,"offset":0,"text":"x","background":255})",
     "'background' must be a colour such as \"#ff8000\", not 255"},
    {"screen/0/part/name", std::string(4097, '{'), "the payload has 4097 bytes; here it may have 4096 at most"},
};

template <std::size_t Count> void expect_texts(const Row (&rows)[Count]) {
  for (const Row &row : rows) {
    SCOPED_TRACE(row.tail + (' ' + row.payload.substr(0, 80)));
    const Outcome<Command> command = command_of(row.tail, QByteArray::fromStdString(row.payload));
    ASSERT_FALSE(command);
    EXPECT_EQ(command.failure().text.toStdString(), row.text);
  }
}

TEST(WrongPayloadsTest, of_words_are_told_with_what_would_be_right) { expect_texts(word_rows); }
TEST(WrongPayloadsTest, of_lines_name_the_character) { expect_texts(text_rows); }
TEST(WrongPayloadsTest, of_parts_name_the_key) { expect_texts(part_rows); }

TEST(WrongPayloadsTest, of_lines_are_not_read_past_their_end) {
  // The rest of the character is there, but not part of the payload.
  const Outcome<Command> command = command_of("screen/0/line/0", QByteArray::fromRawData("\xE2\x82\xAC", 2));
  ASSERT_FALSE(command);
  EXPECT_EQ(command.failure().text.toStdString(), no_utf8("1"));
}

TEST(WrongPayloadsTest, what_is_nested_as_deep_as_it_can_be_is_refused) {
  for (const char *bytes : {"[", "{\"line\":", "{\"a\":["}) {
    QByteArray payload;
    while (payload.size() + static_cast<int>(std::strlen(bytes)) <= largest_text_payload)
      payload += bytes;
    const Outcome<Command> command = command_of("screen/0/part", payload);
    ASSERT_FALSE(command);
    EXPECT_LT(command.failure().text.size(), 300);
  }
}

} // namespace
} // namespace buttondriver::bridge
