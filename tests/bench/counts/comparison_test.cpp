// SPDX-License-Identifier: Apache-2.0
#include "counts/table/comparison.h"

#include <gmock/gmock.h>

namespace buttondriver::counts {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Row row_with(const char *name, Column column, double value) {
  Row row{name, {}};
  row[column] = value;
  return row;
}

Comparison compare_numbers(Column column, double expected, double seen) {
  return compare({"", {row_with("text", column, expected)}}, {"", {row_with("text", column, seen)}});
}

TEST(ComparisonTest, finds_nothing_within_five_percent) {
  for (const double seen : {950.0, 951.0, 1000.0, 1049.0, 1050.0}) {
    const Comparison result = compare_numbers(Column::instructions, 1000, seen);
    EXPECT_THAT(result.faults, IsEmpty()) << seen;
    EXPECT_THAT(result.notes, IsEmpty()) << seen;
  }
}

TEST(ComparisonTest, tells_what_is_dearer_by_more_as_a_fault) {
  const Comparison result = compare_numbers(Column::instructions, 1000, 1051);
  EXPECT_THAT(result.faults, ElementsAre("text: 1051 instructions, the table has 1000 (+5.1 %)"));
  EXPECT_THAT(result.notes, IsEmpty());
}

TEST(ComparisonTest, tells_what_is_cheaper_by_more_as_a_note) {
  const Comparison result = compare_numbers(Column::allocations, 4, 3);
  EXPECT_THAT(result.faults, IsEmpty());
  EXPECT_THAT(result.notes, ElementsAre("text: 3 allocations, the table has 4 (-25.0 %)"));
}

TEST(ComparisonTest, finds_the_first_one_of_what_there_was_none) {
  EXPECT_THAT(compare_numbers(Column::log_writes, 0, 0.25).faults,
              ElementsAre("text: 0.25 log_writes, the table has 0"));
}

TEST(ComparisonTest, does_not_look_at_what_varies) {
  for (const Column column : {Column::reads, Column::polls, Column::futexes, Column::others})
    EXPECT_THAT(compare_numbers(column, 1, 100).faults, IsEmpty());
}

TEST(ComparisonTest, goes_by_names_and_misses_none) {
  const Row first{"first", {}};
  const Row second{"second", {}};
  const Row third{"third", {}};
  EXPECT_THAT(compare({"", {first, second}}, {"", {second, first}}).faults, IsEmpty());
  EXPECT_THAT(compare({"", {first, second}}, {"", {second, third}}).faults,
              ElementsAre("third: not in the table", "first: in the table only"));
}

} // namespace
} // namespace buttondriver::counts
