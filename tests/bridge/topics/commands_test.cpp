// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/topic_commands.h"

#include "pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace buttondriver::bridge {
namespace {

using test::bytes_of;
using test::from_hex;
using test::to_hex;
using Kind = Target::Kind;

std::string hex(const QByteArray &bytes) { return to_hex(bytes.toStdString()); }
std::string golden(const std::string &digits) { return to_hex(from_hex(digits)); }

struct Row {
  const char *tail;
  QByteArray payload;
  std::string frame;
  Target target;
  bool newest_wins;
};

Target lamp(Kind kind, std::int16_t place) { return {kind, Target::everything, place, false, {}}; }
Target line(std::int16_t screen, std::int16_t place) { return {Kind::line, screen, place, false, {}}; }
Target part(std::int16_t screen, std::int16_t place, Target::Characters characters = {}) {
  return {Kind::line, screen, place, true, {}, characters};
}
Target whole(std::int16_t screen) { return {Kind::screen, screen, Target::everything, false, {}}; }

const std::string four_pixels = test::bmp_of_four_pixels;

const Row rows[] = {
    {"led/5", "blink 500", "00000010 00000011 00000005 ffffffff 000001f4", lamp(Kind::button, 5), true},
    {"led/0", "on", "00000010 00000011 00000000 00000001 00000000", lamp(Kind::button, 0), true},
    {"led/23", "off", "00000010 00000011 00000017 00000000 00000000", lamp(Kind::button, 23), true},
    {"led/all", "blink 1", "00000010 00000011 ffffffff ffffffff 00000001", lamp(Kind::button, -1), true},
    {"led/all", "blink 2147483647", "00000010 00000011 ffffffff ffffffff 7fffffff", lamp(Kind::button, -1), true},
    {"status/3", "on", "0000000c 00000015 00000003 00000001", lamp(Kind::status, 3), true},
    {"status/31", "off", "0000000c 00000015 0000001f 00000000", lamp(Kind::status, 31), true},
    {"toggle/1", "on", "0000000c 00000016 00000001 00000001", lamp(Kind::toggle, 1), true},
    {"toggle/0", "off", "0000000c 00000016 00000000 00000000", lamp(Kind::toggle, 0), true},
    {"screen/0/line/2", "Ready", "0000001a 0000000f 00000000 00000002 00000001 00000006 526561647900", line(0, 2),
     true},
    {"screen/all/line/127/inverse", "\xC2\xB0\xC3\xBF", // a degree sign, and the last letter of Latin-1
     "00000017 0000000f ffffffff 0000007f 00000000 00000003 b0ff00", line(-1, 127), true},
    {"screen/2/line/0", " ~\xC2\xA0", // the first and the last on this side of each range of control characters
     "00000018 0000000f 00000002 00000000 00000001 00000004 207ea000", line(2, 0), true},
    {"screen/0/part/AZaz09-_.", R"({"line":0,"offset":0,"text":"x"})",
     "00000022 00000012 00000000 00000000 00000000 00000001 00ffffff 00000000 00000002 7800", part(0, 0, {0, 1}),
     false},
    {"screen/1/part", R"({"line":0,"offset":3,"text":"12.5","colour":"#ff0000"})",
     "00000025 00000012 00000001 00000000 00000003 00000004 00ff0000 00000000 00000005 31322e3500", part(1, 0, {3, 4}),
     false},
    {"screen/all/part/a-name_1.x", R"({"background":"#0a0B0c","chars":2,"text":"\u00e9","offset":14,"line":7})",
     "00000023 00000012 ffffffff 00000007 0000000e 00000002 00ffffff 000a0b0c 00000003 e92000", part(-1, 7, {14, 2}),
     false},
    {"screen/0/part", R"({"line":1,"offset":0,"text":"abc","chars":2})",
     "00000023 00000012 00000000 00000001 00000000 00000002 00ffffff 00000000 00000003 616200", part(0, 1, {0, 2}),
     false},
    // One character more than fits: it may run on in the next line.
    {"screen/0/part", R"({"line":1,"offset":15,"text":"ab"})",
     "00000023 00000012 00000000 00000001 0000000f 00000002 00ffffff 00000000 00000003 616200",
     part(0, Target::everything), false},
    {"screen/0/part", R"({"line":127,"offset":127,"text":"","chars":1})",
     "00000022 00000012 00000000 0000007f 0000007f 00000001 00ffffff 00000000 00000002 2000",
     part(0, Target::everything), false},
    {"screen/2/image/63/63",
     bytes_of(test::bmp_of_four_pixels),
     "0000005a 00000013 00000002 0000003f 0000003f 00000046" + four_pixels,
     {Kind::area, 2, Target::everything, false, {63, 63, 2, 2}},
     false},
    {"screen/all/image",
     bytes_of(test::bmp_of_four_pixels),
     "0000005a 00000013 ffffffff 00000000 00000000 00000046" + four_pixels,
     {Kind::area, -1, Target::everything, false, {0, 0, 2, 2}},
     false},
    {"screen/1/blackout", "now", "00000008 00000010 00000001", whole(1), false},
    {"screen/all/blackout", "now", "00000008 00000010 ffffffff", whole(-1), false},
    {"blackout", "now", "00000008 00000010 ffffffff", whole(-1), false},
    {"reconfig", "now", "00000008 0000000a 00000000", {}, false},
};

TEST(CommandsTest, have_the_bytes_of_their_messages_and_say_what_they_set) {
  for (const Row &row : rows) {
    SCOPED_TRACE(row.tail + (' ' + row.payload.left(60).toStdString()));
    const Outcome<Command> command = command_of(row.tail, row.payload);
    if (!command) {
      ADD_FAILURE() << command.failure().text.toStdString();
      continue;
    }
    EXPECT_EQ(hex(command->frame), golden(row.frame));
    EXPECT_TRUE(command->target == row.target);
    EXPECT_EQ(command->newest_wins, row.newest_wins);
  }
}

TEST(CommandsTest, of_a_line_have_as_many_characters_as_a_line_can_have) {
  for (const int count : {1, 127, 128, 129, 4096}) {
    SCOPED_TRACE(count);
    const Outcome<Command> command = command_of("screen/0/line/0", QByteArray(count, 'x'));
    ASSERT_TRUE(command);
    const int sent = std::min(count, 128);
    EXPECT_EQ(hex(command->frame.mid(16, 8)),
              golden("00000001") + hex(bytes_of("000000")) + hex(QByteArray(1, static_cast<char>(sent + 1))));
    EXPECT_EQ(command->frame.mid(24), QByteArray(sent, 'x') + '\0');
  }
}

TEST(CommandsTest, that_clear_have_the_bytes_of_their_messages) {
  struct Clearing {
    Target target;
    const char *frame;
  };
  const Clearing clearings[] = {
      {lamp(Kind::button, 5), "00000010 00000011 00000005 00000000 00000000"},
      {lamp(Kind::button, -1), "00000010 00000011 ffffffff 00000000 00000000"},
      {lamp(Kind::status, 31), "0000000c 00000015 0000001f 00000000"},
      {lamp(Kind::toggle, 1), "0000000c 00000016 00000001 00000000"},
      {line(2, 7), "00000008 00000010 00000002"},
      {part(0, 7), "00000008 00000010 00000000"},
      {{Kind::area, 1, Target::everything, false, {1, 2, 3, 4}}, "00000008 00000010 00000001"},
      {whole(0), "00000008 00000010 00000000"},
      {whole(-1), "00000008 00000010 ffffffff"},
      {{}, ""},
  };
  for (const Clearing &clearing : clearings)
    EXPECT_EQ(hex(clearing_frame(clearing.target)), golden(clearing.frame)) << clearing.frame;
}

TEST(CommandsTest, ping_has_the_bytes_of_its_message) { EXPECT_EQ(hex(ping_frame()), golden("00000004 0000000c")); }

} // namespace
} // namespace buttondriver::bridge
