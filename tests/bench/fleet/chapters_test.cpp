// SPDX-License-Identifier: Apache-2.0
#include "fleet/report/chapters.h"

#include <gmock/gmock.h>

namespace buttondriver::fleet {
namespace {

using testing::HasSubstr;

SteadyRun run_of(double seconds) {
  SteadyRun run;
  run.rate = 9876.5;
  run.delays = {1000, seconds, 10 * seconds, 100 * seconds};
  run.receiver_seconds = seconds / 10;
  run.broker_seconds = seconds / 20;
  run.bytes_per_panel = 60 * 1024;
  run.broker_bytes_per_panel = 20 * 1024;
  run.threads = 2;
  return run;
}

TEST(ChaptersTest, of_an_even_load_have_each_value_of_both_sides) {
  const auto group = steady_group({}, {run_of(0.004), run_of(0.008)}, {run_of(0.001), run_of(0.002)});
  ASSERT_EQ(group.rows.size(), 5U);
  const double ours[] = {0.004, 0.04, 0.4, 0.0004, 0.0002};
  for (std::size_t i = 0; i < group.rows.size(); ++i) {
    const auto &row = group.rows[i];
    ASSERT_EQ(row.ours.size(), 2U) << row.name;
    ASSERT_EQ(row.theirs.size(), 2U) << row.name;
    EXPECT_DOUBLE_EQ(row.ours[0], ours[i]) << row.name;
    EXPECT_DOUBLE_EQ(row.ours[1], 2 * ours[i]) << row.name;
    EXPECT_DOUBLE_EQ(row.theirs[0], ours[i] / 4) << row.name;
  }
  EXPECT_THAT(group.introduction, HasSubstr("9876 a second"));
}

TEST(ChaptersTest, hold_99_of_100_lines_to_50_ms) {
  const auto is_reached = [](double seconds) {
    return yardsticks::reaches_goal(steady_group({}, {run_of(seconds)}, {run_of(1)}).rows[1]);
  };
  EXPECT_TRUE(is_reached(0.0049));
  EXPECT_FALSE(is_reached(0.0051));
}

TEST(ChaptersTest, hold_a_panel_to_50_kib) {
  SteadyRun run = run_of(1);
  EXPECT_FALSE(yardsticks::reaches_goal(memory_group({}, {run}).rows[0]));
  run.bytes_per_panel = 49 * 1024;
  const auto group = memory_group({}, {run});
  EXPECT_TRUE(yardsticks::reaches_goal(group.rows[0]));
  EXPECT_DOUBLE_EQ(group.rows[0].theirs[0], 20 * 1024);
  EXPECT_THAT(group.introduction, HasSubstr("2 threads."));
}

TEST(ChaptersTest, tell_in_bold_letters_how_many_panels_are_wrong) {
  const std::string text = disturbed_chapter({}, {{"a", "it rains", 100, 1.23, 0}, {"b", "it snows", 0, 60, 7}});
  EXPECT_THAT(text, HasSubstr("\n| it rains | 100 | 1.2 s | 0 |\n"));
  EXPECT_THAT(text, HasSubstr("\n| it snows | 0 | 60.0 s | **7** |\n"));
}

} // namespace
} // namespace buttondriver::fleet
