// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/report/comparison.h"

#include <gmock/gmock.h>

#include <limits>

namespace buttondriver::yardsticks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Kind = Goal::Kind;

Comparison row_of(Goal goal, std::vector<double> ours, std::vector<double> theirs) {
  return {"row", "a row", "another", Unit::seconds, goal, std::move(ours), std::move(theirs)};
}

TEST(SpreadTest, has_the_median_and_the_quartiles_in_whatever_order_the_values_come) {
  const Spread spread = spread_of({9, 1, 8, 3, 100, 2, 7, 5, 6});
  EXPECT_EQ(spread.low, 3);
  EXPECT_EQ(spread.median, 6);
  EXPECT_EQ(spread.high, 8);
}

TEST(SpreadTest, of_one_value_is_that_value) {
  const Spread spread = spread_of({4});
  EXPECT_EQ(spread.low, 4);
  EXPECT_EQ(spread.median, 4);
  EXPECT_EQ(spread.high, 4);
}

TEST(OutcomesTest, are_taken_of_each_pair_as_the_goal_speaks_of_them) {
  const std::vector<double> ours = {8, 6};
  const std::vector<double> theirs = {4, 24};
  EXPECT_THAT(outcomes_of(row_of({}, ours, theirs)), ElementsAre(2, 0.25));
  EXPECT_THAT(outcomes_of(row_of({Kind::at_most_times, 1}, ours, theirs)), ElementsAre(2, 0.25));
  EXPECT_THAT(outcomes_of(row_of({Kind::times_as_fast, 1}, ours, theirs)), ElementsAre(0.5, 4));
  EXPECT_THAT(outcomes_of(row_of({Kind::at_most_more, 1}, ours, theirs)), ElementsAre(4, -18));
  EXPECT_THAT(outcomes_of(row_of({Kind::at_most, 1}, ours, theirs)), ElementsAre(8, 6));
}

struct GoalCase {
  const char *name;
  Goal goal;
  double ours;
  bool is_reached; ///< against 10
};

class GoalTest : public testing::TestWithParam<GoalCase> {};

TEST_P(GoalTest, holds_for_the_median) {
  const double ours = GetParam().ours;
  // The other pairs are far better and far worse.
  EXPECT_EQ(reaches_goal(row_of(GetParam().goal, {1e-6, ours, 1e6}, {10, 10, 10})), GetParam().is_reached);
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, GoalTest,
                         testing::Values(GoalCase{"none", {}, 1000, true},
                                         GoalCase{"times", {Kind::at_most_times, 2}, 20, true},
                                         GoalCase{"more_times", {Kind::at_most_times, 2}, 20.1, false},
                                         GoalCase{"fast", {Kind::times_as_fast, 2}, 5, true},
                                         GoalCase{"less_fast", {Kind::times_as_fast, 2}, 5.1, false},
                                         GoalCase{"more", {Kind::at_most_more, 2}, 12, true},
                                         GoalCase{"too_much_more", {Kind::at_most_more, 2}, 12.1, false},
                                         GoalCase{"most", {Kind::at_most, 2}, 2, true},
                                         GoalCase{"too_much", {Kind::at_most, 2}, 2.1, false}),
                         [](const auto &any) { return std::string(any.param.name); });

TEST(FaultTest, of_values_above_zero_on_both_sides_there_is_none) {
  EXPECT_EQ(fault_of(row_of({}, {1, 2}, {3, 4})), "");
}

class FaultyValuesTest : public testing::TestWithParam<std::pair<std::vector<double>, std::vector<double>>> {};

TEST_P(FaultyValuesTest, are_told_with_the_name_of_the_row) {
  EXPECT_THAT(fault_of(row_of({}, GetParam().first, GetParam().second)), HasSubstr("row: "));
}

using Values = std::vector<double>;
INSTANTIATE_TEST_SUITE_P(OfManyKinds, FaultyValuesTest,
                         testing::Values(std::pair{Values{}, Values{}}, std::pair{Values{}, Values{1}},
                                         std::pair{Values{1}, Values{}}, std::pair{Values{1, 2}, Values{1}},
                                         std::pair{Values{0}, Values{1}}, std::pair{Values{1}, Values{0}},
                                         std::pair{Values{1, -1}, Values{1, 1}},
                                         std::pair{Values{std::numeric_limits<double>::infinity()}, Values{1}},
                                         std::pair{Values{std::numeric_limits<double>::quiet_NaN()}, Values{1}}));

} // namespace
} // namespace buttondriver::yardsticks
