// SPDX-License-Identifier: Apache-2.0
#include "model/commands/message_bytes.h"
#include "model/commands/shrinker.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace buttondriver::test {
namespace {

Command message(std::string bytes) { return {Command::Kind::message, std::move(bytes), 0, 0}; }

TEST(ShrinkerTest, leaves_the_two_commands_that_a_failure_needs) {
  Sequence sequence(20, {Command::Kind::tick, {}, 0, 0});
  sequence[4] = {Command::Kind::font, {}, 7, 5};
  sequence[17] = {Command::Kind::remove_levels, {}, 0, 0};
  const auto fails = [](const Sequence &candidate) {
    const auto is = [](Command::Kind kind) { return [kind](const Command &command) { return command.kind == kind; }; };
    const auto font = std::find_if(candidate.begin(), candidate.end(), is(Command::Kind::font));
    return std::any_of(font, candidate.end(), is(Command::Kind::remove_levels));
  };
  EXPECT_EQ(to_text(shortest_failing(sequence, fails)), "font 7 5\nremove-levels\n");
}

TEST(ShrinkerTest, cuts_messages_and_brings_their_numbers_down_to_those_that_still_fail) {
  const Sequence sequence = {message(std::string("\0\0\0\x10\0\0\x12\x34 and much more after it.", 31))};
  const auto fails = [](const Sequence &candidate) {
    if (candidate.size() != 1 || candidate[0].bytes.size() < 8)
      return false;
    return signed_network_word(candidate[0].bytes, 4) >= 300;
  };
  EXPECT_EQ(to_text(shortest_failing(sequence, fails)), "00000008000000100000012c  # BMS_BlackoutScreen 300\n");
}

TEST(ShrinkerTest, asks_no_more_often_than_it_may) {
  int asked = 0;
  const Sequence sequence(50, {Command::Kind::tick, {}, 0, 0});
  const auto fails = [&](const Sequence &candidate) {
    ++asked;
    return candidate.size() > 1;
  };
  shortest_failing(sequence, fails, 5);
  EXPECT_EQ(asked, 5);
}

} // namespace
} // namespace buttondriver::test
