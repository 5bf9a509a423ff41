// SPDX-License-Identifier: Apache-2.0
#include "latency/rows/blinking.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace buttondriver::latency {
namespace {

using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;

constexpr std::int64_t ms = 1'000'000;
constexpr std::uint8_t button_led = 0x40;
constexpr std::uint8_t on = 0x20;
constexpr Blinking two_buttons = {2, 200 * ms};

/// Two buttons that blink from 0 ms to 4 s, the second one 2 ms after the first.
std::vector<LedCommand> steady_blinking() {
  std::vector<LedCommand> commands;
  for (int change = 0; change < 20; ++change)
    for (std::uint8_t button = 0; button < 2; ++button)
      commands.push_back({change * 200 * ms + button * 2 * ms,
                          static_cast<std::uint8_t>(button_led + button + (change % 2 == 0 ? on : 0))});
  return commands;
}

void drop(std::vector<LedCommand> &commands, std::int64_t from_ns, std::int64_t to_ns) {
  commands.erase(std::remove_if(commands.begin(), commands.end(),
                                [&](const LedCommand &any) { return any.at_ns >= from_ns && any.at_ns < to_ns; }),
                 commands.end());
}

constexpr Window all_of_it = {0, 3'900 * ms};

TEST(PeriodDeviationsTest, are_zero_for_a_button_that_keeps_its_beat) {
  const Values deviations = period_deviations(steady_blinking(), two_buttons, all_of_it);
  EXPECT_EQ(deviations.values.size(), 2 * 9);
  EXPECT_THAT(deviations.values, Each(DoubleNear(0, 1e-9)));
}

TEST(PeriodDeviationsTest, tell_a_change_that_comes_early_or_late) {
  std::vector<LedCommand> commands = steady_blinking();
  commands[4].at_ns += 30 * ms; // the first button's second time
  const Values deviations = period_deviations(commands, {1, 200 * ms}, {0, 1'250 * ms});
  EXPECT_THAT(deviations.values, ElementsAre(DoubleNear(0.03, 1e-9), DoubleNear(0.03, 1e-9), DoubleNear(0, 1e-9)));
}

TEST(PeriodDeviationsTest, count_a_period_that_begins_before_the_window_and_none_that_ends_before_it) {
  EXPECT_EQ(period_deviations(steady_blinking(), {1, 200 * ms}, {450 * ms, 900 * ms}).values.size(), 1);
}

TEST(PeriodDeviationsTest, count_blinking_that_stands_still_until_the_end) {
  std::vector<LedCommand> commands = steady_blinking();
  drop(commands, 1'100 * ms, 9'999 * ms);
  const Values deviations = period_deviations(commands, {1, 200 * ms}, all_of_it);
  EXPECT_THAT(deviations.values, ElementsAre(DoubleNear(0, 1e-9), DoubleNear(0, 1e-9), DoubleNear(2.7, 1e-9)));
}

TEST(PeriodDeviationsTest, count_blinking_that_never_begins) {
  EXPECT_THAT(period_deviations({}, {1, 200 * ms}, all_of_it).values, ElementsAre(DoubleNear(3.9, 1e-9)));
}

TEST(StepSpreadsTest, are_the_time_from_the_first_to_the_last_button) {
  const Values spreads = step_spreads(steady_blinking(), two_buttons, all_of_it);
  EXPECT_EQ(spreads.values.size(), 19);
  EXPECT_THAT(spreads.values, Each(DoubleNear(0.002, 1e-9)));
  EXPECT_EQ(spreads.missing, 0);
}

TEST(StepSpreadsTest, tell_a_button_that_is_late_and_one_that_is_early) {
  std::vector<LedCommand> commands = steady_blinking();
  commands[1].at_ns += 90 * ms;
  commands[3].at_ns -= 50 * ms;
  const Values spreads = step_spreads(commands, two_buttons, {0, 500 * ms});
  EXPECT_THAT(spreads.values, ElementsAre(DoubleNear(0.092, 1e-9), DoubleNear(0.048, 1e-9)));
}

TEST(StepSpreadsTest, miss_a_button_that_does_not_change_likewise) {
  std::vector<LedCommand> commands = steady_blinking();
  commands.erase(commands.begin() + 3);
  EXPECT_EQ(step_spreads(commands, two_buttons, {0, 1'300 * ms}).missing, 1);
}

TEST(ChangeOfButtonTest, is_on_or_off_of_that_button_and_nothing_else) {
  EXPECT_TRUE(is_change_of_button({0, button_led + on + 3}, 3));
  EXPECT_TRUE(is_change_of_button({0, button_led + 3}, 3));
  EXPECT_FALSE(is_change_of_button({0, button_led + 2}, 3));
  EXPECT_FALSE(is_change_of_button({0, 0x80 + on + 3}, 3));
}

} // namespace
} // namespace buttondriver::latency
