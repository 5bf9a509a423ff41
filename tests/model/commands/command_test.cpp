// SPDX-License-Identifier: Apache-2.0
#include "model/commands/command.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace buttondriver::test {
namespace {

TEST(CommandTest, has_a_line_for_each_command) {
  const Sequence sequence = {
      {Command::Kind::message, std::string("\0\0\0\x10\xFF\xFF\xFF\xFF", 8), 0, 0},
      {Command::Kind::message, std::string("\0\0", 2), 0, 0},
      {Command::Kind::tick, {}, 0, 0},
      {Command::Kind::font, {}, 7, 5},
      {Command::Kind::levels, "scr 70\n", 0, 0},
      {Command::Kind::levels, "", 0, 0},
      {Command::Kind::remove_levels, {}, 0, 0},
      {Command::Kind::look, {}, 0, 0},
  };
  const std::string text = "0000000800000010ffffffff  # BMS_BlackoutScreen -1\n"
                           "000000020000  # TYPE_NULL_MESSAGE\n"
                           "tick\n"
                           "font 7 5\n"
                           "levels \"7363722037300a\"\n"
                           "levels \"\"\n"
                           "remove-levels\n"
                           "look\n";
  EXPECT_EQ(to_text(sequence), text);
  EXPECT_EQ(read_sequence(text), sequence);
}

TEST(CommandTest, skips_empty_lines_and_remarks) {
  EXPECT_EQ(read_sequence("# a remark\n\n  \ntick # another\n"), (Sequence{{Command::Kind::tick, {}, 0, 0}}));
}

class BadCommandTest : public testing::TestWithParam<const char *> {};

TEST_P(BadCommandTest, is_refused) { EXPECT_THROW(read_sequence(GetParam()), std::invalid_argument); }

INSTANTIATE_TEST_SUITE_P(Of, BadCommandTest,
                         testing::Values("sing", "000000", "0000000500000010", "font 8", "levels 73"));

} // namespace
} // namespace buttondriver::test
