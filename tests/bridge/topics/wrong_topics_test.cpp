// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/topic_commands.h"

#include <gtest/gtest.h>

#include <string>

namespace buttondriver::bridge {
namespace {

const std::string all_topics =
    "led/<button>, status/<led>, toggle/<indicator>, screen/<screen>/line/<line>, "
    "screen/<screen>/line/<line>/inverse, screen/<screen>/part, screen/<screen>/part/<name>, screen/<screen>/image, "
    "screen/<screen>/image/<x>/<y>, screen/<screen>/blackout, blackout, reconfig";
const std::string screen_topics =
    "screen/<screen>/line/<line>, screen/<screen>/line/<line>/inverse, screen/<screen>/part, "
    "screen/<screen>/part/<name>, screen/<screen>/image, screen/<screen>/image/<x>/<y>, screen/<screen>/blackout";

struct Row {
  std::string tail;
  std::string text;
};

const Row rows[] = {
    // A word is nearly right.
    {"leds/5", "there is no topic 'leds/5'; did you mean 'led/5'?"},
    {"LED/5", "there is no topic 'LED/5'; did you mean 'led/5'?"},
    {"/led/5", "there is no topic '/led/5'; did you mean 'led/5'?"},
    {"led/5/", "there is no topic 'led/5/'; did you mean 'led/5'?"},
    {"screens/0/lines/2", "there is no topic 'screens/0/lines/2'; did you mean 'screen/0/line/2'?"},
    {"screen/0/line/2/invers", "there is no topic 'screen/0/line/2/invers'; did you mean 'screen/0/line/2/inverse'?"},
    {"screen/1/imgae", "there is no topic 'screen/1/imgae'; did you mean 'screen/1/image'?"},
    {"screen/1/Part/clock", "there is no topic 'screen/1/Part/clock'; did you mean 'screen/1/part/clock'?"},
    {"blakcout", "there is no topic 'blakcout'; did you mean 'blackout'?"},
    {"toggel/1", "there is no topic 'toggel/1'; did you mean 'toggle/1'?"},
    // Only the beginning is, or nothing.
    {"led", "there is no topic 'led'; there is led/<button>"},
    {"led/5/on", "there is no topic 'led/5/on'; there is led/<button>"},
    {"led/1/2/3/4/5/6", "there is no topic 'led/1/2/3/4/5/6'; there is led/<button>"},
    {"screen/0", "there is no topic 'screen/0'; there is " + screen_topics},
    {"screen/0/image/5", "there is no topic 'screen/0/image/5'; there is " + screen_topics},
    {"", "there is no topic ''; there is " + all_topics},
    {"/", "there is no topic '/'; there is " + all_topics},
    {"bad/5", "there is no topic 'bad/5'; there is " + all_topics}, // two of three letters
    {"screen/1/image/2/3/4", "there is no topic 'screen/1/image/2/3/4'; there is " + screen_topics},
    {"blckt", "there is no topic 'blckt'; there is " + all_topics}, // three of eight are missing
    {"my-screen/1/image", "there is no topic 'my-screen/1/image'; there is " + all_topics}, // three too many
    {"lamp/5", "there is no topic 'lamp/5'; there is " + all_topics},
    {"do/led/5", "there is no topic 'do/led/5'; there is " + all_topics},
    {"a-word-that-is-longer-than-all", "there is no topic 'a-word-that-is-longer-than-all'; there is " + all_topics},
    {"x\n\xff'", "there is no topic 'x\\x0a\\xff''; there is " + all_topics},
    {std::string(70000, 'x'), "there is no topic '" + std::string(60, 'x') + "...'; there is " + all_topics},
    // A number is wrong.
    {"led/24", "the button must be a number from 0 to 23, or 'all', not '24'"},
    {"led/05", "the button must be a number from 0 to 23, or 'all', not '05'"},
    {"led/-1", "the button must be a number from 0 to 23, or 'all', not '-1'"},
    {"led/+1", "the button must be a number from 0 to 23, or 'all', not '+1'"},
    {"led/", "the button must be a number from 0 to 23, or 'all', not ''"},
    {"led/ALL", "the button must be a number from 0 to 23, or 'all', not 'ALL'"},
    {"led/5\n", "the button must be a number from 0 to 23, or 'all', not '5\\x0a'"},
    {"led/4294967296", "the button must be a number from 0 to 23, or 'all', not '4294967296'"},
    {"led/99999999999999999999", "the button must be a number from 0 to 23, or 'all', not '99999999999999999999'"},
    {"led/18446744073709551621", "the button must be a number from 0 to 23, or 'all', not '18446744073709551621'"},
    {"status/32", "the led must be a number from 0 to 31, not '32'"},
    {"status/all", "the led must be a number from 0 to 31, not 'all'"},
    {"toggle/2", "the indicator must be a number from 0 to 1, not '2'"},
    {"screen/3/line/0", "the screen must be a number from 0 to 2, or 'all', not '3'"},
    {"screen/0/line/128", "the line must be a number from 0 to 127, not '128'"},
    {"screen/0/line/all", "the line must be a number from 0 to 127, not 'all'"},
    {"screen/0/image/128/0", "the x must be a number from 0 to 127, not '128'"},
    {"screen/0/image/0/128", "the y must be a number from 0 to 127, not '128'"},
    {"screen/x/blackout", "the screen must be a number from 0 to 2, or 'all', not 'x'"},
    // A name is.
    {"screen/0/part/", "a name has 1 to 64 letters, digits, '-', '_' and '.', not ''"},
    {"screen/0/part/a b", "a name has 1 to 64 letters, digits, '-', '_' and '.', not 'a b'"},
    {"screen/0/part/@", "a name has 1 to 64 letters, digits, '-', '_' and '.', not '@'"},
    {"screen/0/part/[", "a name has 1 to 64 letters, digits, '-', '_' and '.', not '['"},
    {"screen/0/part/`", "a name has 1 to 64 letters, digits, '-', '_' and '.', not '`'"},
    {"screen/0/part/{", "a name has 1 to 64 letters, digits, '-', '_' and '.', not '{'"},
    {"screen/0/part/:", "a name has 1 to 64 letters, digits, '-', '_' and '.', not ':'"},
    {"screen/0/part/" + std::string(65, 'n'),
     "a name has 1 to 64 letters, digits, '-', '_' and '.', not '" + std::string(60, 'n') + "...'"},
};

TEST(WrongTopicsTest, are_told_in_one_line_with_what_would_be_right) {
  for (const Row &row : rows) {
    SCOPED_TRACE(row.tail.substr(0, 60));
    const Outcome<Command> command = command_of(QByteArray::fromStdString(row.tail), "on");
    ASSERT_FALSE(command);
    EXPECT_EQ(command.failure().text.toStdString(), row.text);
  }
}

TEST(WrongTopicsTest, a_name_of_64_letters_is_right) {
  EXPECT_TRUE(command_of("screen/0/part/" + QByteArray(64, 'n'), R"({"line":0,"offset":0,"text":"x"})"));
}

} // namespace
} // namespace buttondriver::bridge
