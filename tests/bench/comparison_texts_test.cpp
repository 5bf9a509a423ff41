// SPDX-License-Identifier: Apache-2.0
#include "support/temporary_folder.h"
#include "yardsticks/report/plot.h"
#include "yardsticks/report/table.h"
#include "yardsticks/report/texts.h"

#include <gmock/gmock.h>

namespace buttondriver::yardsticks {
namespace {

using testing::HasSubstr;
using testing::Not;
using Kind = Goal::Kind;

struct TextCase {
  double value;
  Unit unit;
  const char *text;
};

class TextOfTest : public testing::TestWithParam<TextCase> {};

TEST_P(TextOfTest, has_three_digits_and_a_unit) {
  EXPECT_EQ(text_of(GetParam().value, GetParam().unit), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    OfEachUnit, TextOfTest,
    testing::Values(TextCase{3.104e-6, Unit::seconds, "3.10 µs"}, TextCase{412.4e-9, Unit::seconds, "412 ns"},
                    TextCase{0.03146, Unit::seconds, "31.5 ms"}, TextCase{0.99961, Unit::seconds, "1.00 s"},
                    TextCase{1. / 412345, Unit::rate, "412,000/s"}, TextCase{1. / 1234567, Unit::rate, "1,230,000/s"},
                    TextCase{1. / 999, Unit::rate, "999/s"}, TextCase{1. / 8.519, Unit::rate, "8.52/s"},
                    TextCase{512, Unit::bytes, "512 bytes"}, TextCase{5714, Unit::bytes, "5.58 KiB"},
                    TextCase{11.2 * 1048576, Unit::bytes, "11.2 MiB"}));

Comparison row_of(Goal goal, Unit unit, std::vector<double> ours, std::vector<double> theirs) {
  return {"row", "a row", "another", unit, goal, std::move(ours), std::move(theirs)};
}

TEST(SpreadTextTest, has_smaller_ones_first_also_where_they_take_longer) {
  EXPECT_EQ(spread_text({1e-6, 2e-6, 4e-6}, Unit::seconds), "2.00 µs (1.00 µs to 4.00 µs)");
  EXPECT_EQ(spread_text({1e-6, 2e-6, 4e-6}, Unit::rate), "500,000/s (250,000/s to 1,000,000/s)");
}

TEST(OutcomeTextTest, tells_a_ratio_or_a_difference) {
  const std::vector<double> ours = {0.1, 0.2, 0.3};
  const std::vector<double> theirs = {0.1, 0.1, 0.1};
  EXPECT_EQ(outcome_text(row_of({}, Unit::seconds, ours, theirs)), "2.00 times (1.00 to 2.00)");
  EXPECT_EQ(outcome_text(row_of({}, Unit::seconds, theirs, {4, 4, 4})), "0.025 times (0.025 to 0.025)");
  EXPECT_EQ(outcome_text(row_of({Kind::times_as_fast, 3}, Unit::seconds, {0.1}, {0.4})),
            "4.00 times as fast (4.00 to 4.00)");
  EXPECT_EQ(outcome_text(row_of({Kind::at_most_more, 0.03}, Unit::seconds, {0.2}, {0.1875})),
            "12.5 ms more (12.5 ms more to 12.5 ms more)");
  EXPECT_EQ(outcome_text(row_of({Kind::at_most_more, 1}, Unit::bytes, {2048}, {4096})),
            "2.00 KiB less (2.00 KiB less to 2.00 KiB less)");
  EXPECT_EQ(outcome_text(row_of({Kind::at_most, 1}, Unit::bytes, {2048}, {4096})), "");
}

TEST(GoalTextTest, tells_the_limit) {
  EXPECT_EQ(goal_text(row_of({}, Unit::seconds, {}, {})), "");
  EXPECT_EQ(goal_text(row_of({Kind::at_most_times, 1.2}, Unit::seconds, {}, {})), "at most 1.20 times");
  EXPECT_EQ(goal_text(row_of({Kind::times_as_fast, 10}, Unit::seconds, {}, {})), "at least 10.0 times as fast");
  EXPECT_EQ(goal_text(row_of({Kind::at_most_more, 0.03}, Unit::seconds, {}, {})), "at most 30.0 ms more");
  EXPECT_EQ(goal_text(row_of({Kind::at_most, 4096}, Unit::bytes, {}, {})), "at most 4.00 KiB");
}

Group example() {
  return {"messages",
          "Messages",
          "What it is.",
          {row_of({Kind::at_most_times, 2}, Unit::rate, {3e-6}, {1e-6}),
           row_of({Kind::at_most_times, 2}, Unit::seconds, {1e-6}, {1e-6}),
           row_of({Kind::at_most, 4096}, Unit::bytes, {8192}, {1024})}};
}

TEST(MarkdownTest, has_a_row_for_each_comparison_and_missed_goals_in_bold_letters) {
  EXPECT_EQ(markdown(example()),
            "## Messages\n\nWhat it is.\n\n"
            "| Measured | Ours | Compared with | Theirs | Ours against theirs | Goal |\n"
            "|---|--:|---|--:|--:|---|\n"
            "| a row | 333,000/s (333,000/s to 333,000/s) | another | 1,000,000/s (1,000,000/s to 1,000,000/s) | "
            "**3.00 times (3.00 to 3.00)** | at most 2.00 times |\n"
            "| a row | 1.00 µs (1.00 µs to 1.00 µs) | another | 1.00 µs (1.00 µs to 1.00 µs) | "
            "1.00 times (1.00 to 1.00) | at most 2.00 times |\n"
            "| a row | 8.00 KiB (8.00 KiB to 8.00 KiB) | another | 1.00 KiB (1.00 KiB to 1.00 KiB) | "
            "**8.00 KiB** | at most 4.00 KiB |\n");
}

TEST(CsvTest, has_every_value_with_its_side_and_its_run) {
  const test::TemporaryFolder folder;
  const Group group{"messages", "", "", {row_of({}, Unit::seconds, {0.5, 2}, {0.25, 4})}};
  ASSERT_TRUE(write_csv(folder.path("values"), {group}));
  EXPECT_EQ(test::read_file(folder.path("values")), "group,row,side,run,value\n"
                                                    "messages,row,ours,1,0.5\n"
                                                    "messages,row,ours,2,2\n"
                                                    "messages,row,theirs,1,0.25\n"
                                                    "messages,row,theirs,2,4\n");
}

TEST(CsvTest, tells_when_it_cannot_be_written) {
  const test::TemporaryFolder folder;
  EXPECT_FALSE(write_csv(folder.path("none/values"), {example()}));
}

/// Where the dots of a plot lie.
std::vector<std::string> dots_of(const std::string &svg) {
  std::vector<std::string> dots;
  for (std::size_t place = 0; (place = svg.find("<circle cx='", place)) != std::string::npos;) {
    place += 12;
    dots.push_back(svg.substr(place, svg.find('\'', place) - place));
  }
  return dots;
}

TEST(PlotTest, of_the_ratios_has_each_row_in_its_place_and_its_goal) {
  const test::TemporaryFolder folder;
  const Group group{"g",
                    "Group",
                    "",
                    {row_of({Kind::times_as_fast, 10}, Unit::seconds, {1}, {100}),
                     row_of({Kind::at_most_times, 1}, Unit::bytes, {100}, {1})}};
  ASSERT_TRUE(write_plots(folder.path("plot"), {group}));
  const std::string svg = test::read_file(folder.path("plot-ratios.svg"));
  // The axis goes from 1/100 to 100 and is 520 wide, from 420 on. The first dot is the legend's.
  EXPECT_THAT(dots_of(svg), testing::ElementsAre("27", "420", "940"));
  EXPECT_THAT(svg, HasSubstr("<path class='goal' d='M550 86v10'/>"));
  EXPECT_THAT(svg, HasSubstr("<path class='goal' d='M680 104v10'/>"));
  EXPECT_THAT(svg, HasSubstr(">1/100</text>"));
  EXPECT_THAT(svg, HasSubstr(">100</text>"));
  EXPECT_EQ(svg.substr(svg.size() - 7), "</svg>\n");
}

TEST(PlotTest, of_the_times_has_both_sides_and_no_memory) {
  const test::TemporaryFolder folder;
  Group group{"g", "Group", "", {row_of({}, Unit::rate, {1e-6}, {1e-4})}};
  group.rows.push_back(row_of({}, Unit::bytes, {1}, {1}));
  ASSERT_TRUE(write_plots(folder.path("plot"), {group}));
  const std::string svg = test::read_file(folder.path("plot-times.svg"));
  const std::vector<std::string> dots = dots_of(svg);
  ASSERT_EQ(dots.size(), 4);
  EXPECT_EQ(dots[2], "420");
  EXPECT_EQ(dots[3], "940");
  EXPECT_THAT(svg, HasSubstr(">1 µs</text>"));
  EXPECT_THAT(svg, HasSubstr(">100 µs</text>"));
  EXPECT_THAT(svg, Not(HasSubstr("class='goal' d")));
}

TEST(PlotTest, of_values_that_cannot_be_has_an_end) {
  const test::TemporaryFolder folder;
  const Group group{"g", "Group", "", {row_of({}, Unit::seconds, {0}, {0}), row_of({}, Unit::seconds, {1}, {0})}};
  ASSERT_TRUE(write_plots(folder.path("plot"), {group}));
  EXPECT_LT(test::read_file(folder.path("plot-ratios.svg")).size(), 10'000);
}

TEST(PlotTest, tells_when_it_cannot_be_written) {
  const test::TemporaryFolder folder;
  EXPECT_FALSE(write_plots(folder.path("none/plot"), {example()}));
}

} // namespace
} // namespace buttondriver::yardsticks
