// SPDX-License-Identifier: Apache-2.0
// What the commands for messages put on the wire, and which arguments they refuse.

#include "buttonctl/commands/command_line.h"
#include "buttonctl/messages/byte_commands.h"
#include "buttonctl/messages/daemon_commands.h"
#include "buttonctl/messages/lamp_commands.h"
#include "buttonctl/messages/screen_commands.h"
#include "buttonctl/support/parsed_arguments.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/working_folder.h"
#include "support/hex.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

using test::from_hex;
using test::to_hex;

std::string hex(const QByteArray &bytes) { return to_hex(bytes.toStdString()); }
std::string golden(const std::string &digits) { return to_hex(from_hex(digits)); }

const CommandTable &commands() {
  static const CommandTable table = {text_command(),     subtext_command(), image_command(),  blackout_command(),
                                     led_command(),      status_command(),  toggle_command(), upload_command(),
                                     reconfig_command(), ping_command(),    null_command(),   raw_command()};
  return table;
}

/// The steps of a command line that is good.
Steps steps_of(const QStringList &arguments) {
  const Command *command = find_command(commands(), arguments.first());
  test::ParsedArguments parsed(*command, arguments.mid(1));
  const Steps steps = std::get<StepsBuilder>(command->work)(parsed.reader());
  EXPECT_TRUE(parsed.reader().atEnd());
  EXPECT_TRUE(parsed.reader().outcome()) << arguments.join(QLatin1Char(' ')).toStdString();
  return steps;
}

struct CommandRow {
  QStringList arguments;
  std::string frame; ///< hexadecimal, the 4-byte length in front
};

std::vector<CommandRow> command_rows() {
  std::string bits;
  for (int i = 0; i < 120; ++i)
    bits += "5a";
  std::string turned;
  for (int i = 0; i < 120; ++i)
    turned += "a5";
  const std::string picture = "424d 48000000 1122 3344 36000000 28000000 02000000 02000000 0100 1800"
                              "00000000 00000000 00000000 00000000 00000000 00000000"
                              "0000ff ffffff 0000 ff0000 00ff00 0000 abcd";
  const std::string converted = "424d 3a000000 0000 0000 36000000 28000000 01000000 01000000 0100 1800"
                                "00000000 04000000 130b0000 130b0000 00000000 00000000 332211 00";
  return {
      {{"text", "0", "0", "Hi"}, "00000017 0000000f 00000000 00000000 00000001 00000003 486900"},
      {{"text", "2", "7", "Hi", "--white-on-black"}, "00000017 0000000f 00000002 00000007 00000001 00000003 486900"},
      {{"text", "--black-on-white", "all", "127", ""}, "00000015 0000000f ffffffff 0000007f 00000000 00000001 00"},
      {{"text", "1", "0", QStringLiteral("\u00e9\u00ff")},
       "00000017 0000000f 00000001 00000000 00000001 00000003 e9ff00"},
      {{"text", "--", "0", "0", "-1"}, "00000017 0000000f 00000000 00000000 00000001 00000003 2d3100"},
      {{"text", "0", "0", "--", "--help"}, "0000001b 0000000f 00000000 00000000 00000001 00000007 2d2d68656c7000"},
      {{"subtext", "all", "2", "3", "abcd", "--colour", "FF0000", "--background=00ff00"},
       "00000025 00000012 ffffffff 00000002 00000003 00000004 00ff0000 0000ff00 00000005 6162636400"},
      {{"subtext", "1", "0", "127", "a"},
       "00000022 00000012 00000001 00000000 0000007f 00000001 00ffffff 00000000 00000002 6100"},
      {{"subtext", "1", "0", "0", "abc", "--count", "2", "--color", "#102030"},
       "00000024 00000012 00000001 00000000 00000000 00000002 00102030 00000000 00000004 61626300"},
      {{"subtext", "1", "0", "0", "a", "--count", "3"},
       "00000024 00000012 00000001 00000000 00000000 00000003 00ffffff 00000000 00000004 61202000"},
      {{"image", "1", "2x2.bmp"}, "0000005c 00000013 00000001 00000000 00000000 00000048" + picture},
      {{"image", "all", "2x2.bmp", "--at", "10,126"},
       "0000005c 00000013 ffffffff 0000000a 0000007e 00000048" + picture},
      {{"image", "0", "1x1.png", "--crop"}, "0000004e 00000013 00000000 00000000 00000000 0000003a" + converted},
      {{"image", "0", "1x1.png", "--fit", "--at=127,127"},
       "0000004e 00000013 00000000 0000007f 0000007f 0000003a" + converted},
      {{"blackout"}, "00000008 00000010 ffffffff"},
      {{"blackout", "all"}, "00000008 00000010 ffffffff"},
      {{"blackout", "2"}, "00000008 00000010 00000002"},
      {{"led", "5", "on"}, "00000010 00000011 00000005 00000001 00000000"},
      {{"led", "23", "off"}, "00000010 00000011 00000017 00000000 00000000"},
      {{"led", "all", "blink", "500"}, "00000010 00000011 ffffffff ffffffff 000001f4"},
      {{"led", "0", "blink", "2147483647"}, "00000010 00000011 00000000 ffffffff 7fffffff"},
      {{"status", "31", "on"}, "0000000c 00000015 0000001f 00000001"},
      {{"status", "0", "off"}, "0000000c 00000015 00000000 00000000"},
      {{"toggle", "1", "on"}, "0000000c 00000016 00000001 00000001"},
      {{"toggle", "0", "off"}, "0000000c 00000016 00000000 00000000"},
      {{"upload", "23", "bits.raw"}, "00000084 00000006 00000017 00000078" + bits},
      {{"upload", "0", "bits.raw", "--invert"}, "00000084 00000006 00000000 00000078" + turned},
      {{"reconfig"}, "00000008 0000000a 00000000"},
      {{"ping"}, "00000004 0000000c"},
      {{"null"}, "00000004 00000000"},
      {{"null", "01", "FF 00", "aabb"}, "00000009 00000000 01ff00aabb"},
      {{"raw", "0000000c"}, "00000004 0000000c"},
      {{"raw", "00 01", "02"}, "00000003 000102"},
      {{"raw", ""}, "00000000"},
      {{"raw", "--unframed", "ffFFffff 0c"}, "ffffffff0c"},
  };
}

class MessageCommandsTest : public testing::Test {
protected:
  MessageCommandsTest() {
    _folder.write("2x2.bmp", test::bmp_2x2());
    _folder.write("1x1.png", test::encoded(test::filled(1, 1, qRgb(0x11, 0x22, 0x33)), "PNG"));
    _folder.write("wide.png", test::encoded(test::filled(129, 1, 0), "PNG"));
    _folder.write("bits.raw", QByteArray(120, '\x5A'));
    _folder.write("note.txt", "hello");
  }

  const test::WorkingFolder _folder;
};

TEST_F(MessageCommandsTest, become_golden_frames) {
  for (const CommandRow &row : command_rows()) {
    const std::string line = row.arguments.join(QLatin1Char(' ')).toStdString();
    const Steps steps = steps_of(row.arguments);
    ASSERT_EQ(steps.size(), 1U) << line;
    EXPECT_EQ(hex(steps[0].bytes), golden(row.frame)) << line;
  }
}

TEST_F(MessageCommandsTest, a_list_becomes_a_message_for_each_in_its_order) {
  struct Row {
    QStringList arguments;
    const char *frames;
  };
  const Row rows[] = {
      {{"led", "9,2-4", "on"},
       "00000010 00000011 00000009 00000001 00000000  00000010 00000011 00000002 00000001 00000000"
       "00000010 00000011 00000003 00000001 00000000  00000010 00000011 00000004 00000001 00000000"},
      {{"led", "7-7,0", "blink", "500"},
       "00000010 00000011 00000007 ffffffff 000001f4  00000010 00000011 00000000 ffffffff 000001f4"},
      {{"led", "1,1", "off"},
       "00000010 00000011 00000001 00000000 00000000  00000010 00000011 00000001 00000000 00000000"},
      {{"status", "31,0", "on"}, "0000000c 00000015 0000001f 00000001  0000000c 00000015 00000000 00000001"},
      {{"toggle", "all", "off"}, "0000000c 00000016 00000000 00000000  0000000c 00000016 00000001 00000000"},
  };
  for (const Row &row : rows) {
    std::string frames;
    for (const Step &step : steps_of(row.arguments))
      frames += hex(step.bytes);
    EXPECT_EQ(frames, golden(row.frames)) << row.frames;
  }
  const Steps all = steps_of({"status", "all", "on"});
  ASSERT_EQ(all.size(), 32U);
  for (int id = 0; id < 32; ++id)
    EXPECT_EQ(all[static_cast<std::size_t>(id)].bytes.at(11), id);
}

TEST_F(MessageCommandsTest, each_has_a_row_above) {
  for (const Command &command : commands()) {
    bool known = false;
    for (const CommandRow &row : command_rows())
      known = known || row.arguments.first() == QLatin1String(command.name);
    EXPECT_TRUE(known) << command.name;
  }
}

TEST_F(MessageCommandsTest, only_ping_waits_for_an_answer) {
  for (const CommandRow &row : command_rows())
    EXPECT_EQ(steps_of(row.arguments)[0].kind == Step::Kind::ping, row.arguments.first() == QLatin1String("ping"));
  const Steps three = steps_of({"ping", "--count", "3"});
  ASSERT_EQ(three.size(), 3U);
  for (const Step &step : three)
    EXPECT_EQ(hex(step.bytes), "000000040000000c");
}

TEST_F(MessageCommandsTest, an_image_is_built_without_output) {
  testing::internal::CaptureStdout();
  steps_of({"image", "1", "2x2.bmp"});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(MessageCommandsTest, bad_arguments_are_refused_with_the_reason) {
  struct Row {
    QStringList arguments;
    const char *text;
  };
  const Row rows[] = {
      {{"text"}, "text: SCREEN is missing; see 'buttonctl text --help'"},
      {{"text", "0"}, "text: LINE is missing; see 'buttonctl text --help'"},
      {{"text", "0", "0"}, "text: TEXT is missing; see 'buttonctl text --help'"},
      {{"text", "3", "0", "x"}, "text: SCREEN must be a number from 0 to 2, or 'all', not '3'"},
      {{"text", "--", "-1", "0", "x"}, "text: SCREEN must be a number from 0 to 2, or 'all', not '-1'"},
      {{"text", "ALL", "0", "x"}, "text: SCREEN must be a number from 0 to 2, or 'all', not 'ALL'"},
      {{"text", "0", "128", "x"}, "text: LINE must be a number from 0 to 127, not '128'"},
      {{"text", "0", "+1", "x"}, "text: LINE must be a number from 0 to 127, not '+1'"},
      {{"text", "0", " 1", "x"}, "text: LINE must be a number from 0 to 127, not ' 1'"},
      {{"text", "0", "0x1", "x"}, "text: LINE must be a number from 0 to 127, not '0x1'"},
      {{"text", "0", "1.0", "x"}, "text: LINE must be a number from 0 to 127, not '1.0'"},
      {{"text", "0", "", "x"}, "text: LINE must be a number from 0 to 127, not ''"},
      {{"text", "0", "--", "-", "x"}, "text: LINE must be a number from 0 to 127, not '-'"},
      {{"text", "0", "99999999999999999999", "x"},
       "text: LINE must be a number from 0 to 127, not '99999999999999999999'"},
      {{"text", "0", "0", "a", "b"}, "text: 'b' is one argument too many; see 'buttonctl text --help'"},
      {{"text", "0", "0", "-5"},
       "text: unknown option '-5'; see 'buttonctl text --help', and put -- before arguments that start with a dash"},
      {{"text", "0", "0", "x", "--black-on-white", "--white-on-black"},
       "text: use only one of --white-on-black and --black-on-white"},
      {{"text", "0", "0", QStringLiteral("\u20ac")},
       "text: TEXT must be Latin-1 (U+0000 to U+00FF); '\xe2\x82\xac' (U+20AC) is not"},
      {{"text", "0", "0", QStringLiteral("\u0100")},
       "text: TEXT must be Latin-1 (U+0000 to U+00FF); '\xc4\x80' (U+0100) is not"},
      {{"text", "0", "0", QString::fromUtf8("\xf0\x9f\x98\x80")},
       "text: TEXT must be Latin-1 (U+0000 to U+00FF); '\xf0\x9f\x98\x80' (U+1F600) is not"},
      {{"subtext", "0", "0", "128", "x"}, "subtext: OFFSET must be a number from 0 to 127, not '128'"},
      {{"subtext", "0", "0", "0", ""},
       "subtext: TEXT must have 1 to 128 characters, not 0; --count says how many to write"},
      {{"subtext", "0", "0", "0", QString(129, QLatin1Char('x'))},
       "subtext: TEXT must have 1 to 128 characters, not 129; --count says how many to write"},
      {{"subtext", "0", "0", "0", "x", "--count", "0"}, "subtext: --count must be a number from 1 to 128, not '0'"},
      {{"subtext", "0", "0", "0", "x", "--colour", "red"},
       "subtext: --colour must be six hexadecimal digits RRGGBB, not 'red'"},
      {{"subtext", "0", "0", "0", "x", "--background", "0x1234"},
       "subtext: --background must be six hexadecimal digits RRGGBB, not '0x1234'"},
      {{"image", "0"}, "image: FILE is missing; see 'buttonctl image --help'"},
      {{"image", "0", "no.png"}, "image: cannot read 'no.png': No such file or directory"},
      {{"image", "0", "%1%2.png"}, "image: cannot read '%1%2.png': No such file or directory"},
      {{"image", "0", "/dev/zero"}, "image: '/dev/zero' has more than 64 MiB"},
      {{"image", "0", "note.txt"},
       "image: 'note.txt': not a picture that can be read (neither PNG nor JPEG, BMP or GIF)"},
      {{"image", "0", "wide.png"},
       "image: 'wide.png': a picture of 129x1 at 0,0 sticks out of the 128x128 screen; use --fit or --crop"},
      {{"image", "0", "2x2.bmp", "--fit", "--crop"}, "image: use only one of --fit and --crop"},
      {{"image", "0", "2x2.bmp", "--at", "3"}, "image: --at must be X,Y in pixels, such as 10,20, not '3'"},
      {{"image", "0", "2x2.bmp", "--at", "3,4,5"}, "image: --at must be X,Y in pixels, such as 10,20, not '3,4,5'"},
      {{"image", "0", "2x2.bmp", "--at", "a,0"}, "image: --at must be X,Y in pixels, such as 10,20, not 'a,0'"},
      {{"blackout", "4"}, "blackout: SCREEN must be a number from 0 to 2, or 'all', not '4'"},
      {{"led", "24", "on"},
       "led: BUTTON must be a number from 0 to 23, a list such as 0-23 or 0,23, or 'all', not '24'"},
      {{"led", "0-24", "on"},
       "led: BUTTON must be a number from 0 to 23, a list such as 0-23 or 0,23, or 'all', not '0-24'"},
      {{"led", "1,,2", "on"},
       "led: BUTTON must be a number from 0 to 23, a list such as 0-23 or 0,23, or 'all', not '1,,2'"},
      {{"led", "5-3", "on"},
       "led: BUTTON must be a number from 0 to 23, a list such as 0-23 or 0,23, or 'all', not '5-3'"},
      {{"led", "1-2-3", "on"},
       "led: BUTTON must be a number from 0 to 23, a list such as 0-23 or 0,23, or 'all', not '1-2-3'"},
      {{"led", "1,all", "on"},
       "led: BUTTON must be a number from 0 to 23, a list such as 0-23 or 0,23, or 'all', not '1,all'"},
      {{"led", "1-", "on"},
       "led: BUTTON must be a number from 0 to 23, a list such as 0-23 or 0,23, or 'all', not '1-'"},
      {{"led", "--", "-1", "on"},
       "led: BUTTON must be a number from 0 to 23, a list such as 0-23 or 0,23, or 'all', not '-1'"},
      {{"led", "1-3", "up"}, "led: STATE must be 'on', 'off' or 'blink', not 'up'"},
      {{"led", "1"}, "led: STATE is missing; see 'buttonctl led --help'"},
      {{"led", "1", "up"}, "led: STATE must be 'on', 'off' or 'blink', not 'up'"},
      {{"led", "1", "blink"}, "led: MS is missing; see 'buttonctl led --help'"},
      {{"led", "1", "blink", "0"}, "led: MS must be a number from 1 to 2147483647, not '0'"},
      {{"led", "1", "blink", "2147483648"}, "led: MS must be a number from 1 to 2147483647, not '2147483648'"},
      {{"led", "1", "on", "500"}, "led: '500' is one argument too many; see 'buttonctl led --help'"},
      {{"status", "32", "on"},
       "status: ID must be a number from 0 to 31, a list such as 0-31 or 0,31, or 'all', not '32'"},
      {{"status", "1", "1"}, "status: STATE must be 'on' or 'off', not '1'"},
      {{"toggle", "2", "on"}, "toggle: ID must be a number from 0 to 1, a list such as 0-1 or 0,1, or 'all', not '2'"},
      {{"upload", "4", "note.txt"},
       "upload: 'note.txt': not 120 raw bytes, and not a picture that can be read (neither PNG nor JPEG, BMP or GIF)"},
      {{"upload", "4", "2x2.bmp"}, "upload: '2x2.bmp': a button image is 40x24 pixels, this picture is 2x2; use --fit"},
      {{"reconfig", "now"}, "reconfig: 'now' is one argument too many; see 'buttonctl reconfig --help'"},
      {{"ping", "--count", "0"}, "ping: --count must be a number from 1 to 1000000, not '0'"},
      {{"null", "0"}, "null: HEX must be two digits for each byte; '0' has an odd number"},
      {{"raw"}, "raw: HEX is missing; see 'buttonctl raw --help'"},
      {{"raw", "0g"}, "raw: HEX must be hexadecimal digits, two for each byte; '0g' is not"},
      {{"raw", "0 01"}, "raw: HEX must be two digits for each byte; '0' has an odd number"},
      {{"raw", QString(41, QLatin1Char('0'))},
       "raw: HEX must be two digits for each byte; '0000000000000000000000000000000000000000...' has an odd number"},
      {{"raw", "--unframed", ""}, "raw: HEX is empty, so there is nothing to send"},
  };
  for (const Row &row : rows) {
    const Outcome<Action> action = parse_command_line(commands(), row.arguments);
    ASSERT_FALSE(action) << row.text;
    EXPECT_EQ(action.failure().text.toStdString(), row.text);
  }
}

} // namespace
} // namespace buttondriver::buttonctl
