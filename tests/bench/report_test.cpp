// SPDX-License-Identifier: Apache-2.0
#include "latency/report/table.h"

#include <gmock/gmock.h>

namespace buttondriver::latency {
namespace {

using testing::HasSubstr;

const Row &row_of(RowId id) { return all_rows()[static_cast<std::size_t>(id)]; }

TEST(RowsTest, stand_in_the_order_of_their_ids) {
  for (std::size_t i = 0; i < row_count; ++i)
    EXPECT_EQ(static_cast<std::size_t>(all_rows()[i].id), i);
}

TEST(GoalTest, of_a_time_holds_for_the_longest_and_for_the_median) {
  const Row &row = row_of(RowId::open_command);
  EXPECT_TRUE(reaches_goal(row, {{0.01, 0.12, 0.25}}));
  EXPECT_FALSE(reaches_goal(row, {{0.01, 0.12, 0.26}}));
  EXPECT_FALSE(reaches_goal(row, {{0.01, 0.13, 0.25}}));
}

TEST(GoalTest, of_a_share_holds_for_the_smallest) {
  EXPECT_TRUE(reaches_goal(row_of(RowId::busy_share), {{0.95, 0.99, 1}}));
  EXPECT_FALSE(reaches_goal(row_of(RowId::busy_share), {{0.94, 0.99, 1}}));
}

TEST(GoalTest, is_missed_when_something_did_not_come) { EXPECT_FALSE(reaches_goal(row_of(RowId::ping), {{0.01}, 1})); }

TEST(GoalTest, of_a_row_without_one_is_reached) { EXPECT_TRUE(reaches_goal(row_of(RowId::message_rate), {{0}})); }

TEST(TextOfTest, has_two_digits_or_three) {
  EXPECT_EQ(text_of(0.00004, Unit::seconds), "0.04 ms");
  EXPECT_EQ(text_of(0.0041, Unit::seconds), "4.1 ms");
  EXPECT_EQ(text_of(0.0996, Unit::seconds), "100 ms");
  EXPECT_EQ(text_of(1.44, Unit::seconds), "1.4 s");
  EXPECT_EQ(text_of(22.4, Unit::seconds), "22 s");
  EXPECT_EQ(text_of(0.9876, Unit::share), "98.8 %");
  EXPECT_EQ(text_of(28.2, Unit::per_second), "28/s");
  EXPECT_EQ(text_of(1234567, Unit::per_second), "1,234,567/s");
}

MeasuredRun run_of(const char *daemon, double transfer_seconds, double ping_seconds) {
  MeasuredRun run{daemon, "/daemon", transfer_seconds, all_load_kinds()[1], {}, {}};
  for (Values &values : run.rows)
    values.values = {0.001};
  run[RowId::ping].values = {0.001, 0.002, ping_seconds};
  run[RowId::busy_share].values = {0.99, 0.97, 0.98};
  return run;
}

TEST(MarkdownTest, has_the_daemons_side_by_side_and_missed_goals_in_bold_letters) {
  const std::string text = markdown({run_of("before", 0.002, 1.5), run_of("after", 0.002, 0.004)});
  EXPECT_THAT(text, HasSubstr("**A device that takes 2.0 ms for a transfer**\n\n"
                              "| Meanwhile | Measured | Goal | before: median | before: worst | before: count | "
                              "after: median | after: worst | after: count |\n"
                              "|---|---|---|--:|--:|--:|--:|--:|--:|\n"
                              "| 1 client streams pictures | "));
  EXPECT_THAT(text, HasSubstr("|  | a ping of an open connection, to its answer | 50 ms | 2.0 ms | **1.5 s** | 3 | "
                              "2.0 ms | 4.0 ms | 3 |\n"));
  EXPECT_THAT(text, HasSubstr("| the device at work | at least 95 % | 98.0 % | 97.0 % | 3 | "));
}

TEST(MarkdownTest, tells_what_did_not_come) {
  MeasuredRun run = run_of("", 0.002, 0.01);
  run[RowId::first_answer] = {{}, 1, 60};
  run[RowId::new_command] = {{0.001}, 1, 7.5};
  run[RowId::blink_step].values.clear();
  const std::string text = markdown({run});
  EXPECT_THAT(text, HasSubstr("a new connection's first answer to a ping | 100 ms | | **none within 60 s** | 0 |\n"));
  EXPECT_THAT(text, HasSubstr("its transfer | 250 ms | 1.0 ms | **1.0 ms**, then none within 7.5 s | 1 |\n"));
  EXPECT_THAT(text, HasSubstr("first to last | 30 ms | | **none** | 0 |\n"));
}

TEST(MarkdownTest, has_a_table_for_each_device_without_the_rows_that_it_has_not) {
  const std::string text = markdown({run_of("", 0.002, 0.01), run_of("", 0, 0.01)});
  const std::size_t instant = text.find("\n**An instant device**\n");
  ASSERT_NE(instant, std::string::npos);
  EXPECT_LT(text.find("the device at work"), instant);
  EXPECT_EQ(text.find("the device at work", instant), std::string::npos);
  EXPECT_NE(text.find("messages of the load", instant), std::string::npos);
}

} // namespace
} // namespace buttondriver::latency
