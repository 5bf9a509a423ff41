// SPDX-License-Identifier: Apache-2.0
#include "bridge/pauses/growing_pause.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace buttondriver::bridge::test {

TEST(GrowingPauseTest, doubles_up_to_the_longest_and_begins_again) {
  GrowingPause pause(500, 30000);
  for (int round = 0; round < 2; ++round) {
    for (const int longest : {500, 1000, 2000, 4000, 8000, 16000, 30000, 30000}) {
      const int ms = pause.next();
      EXPECT_LE(ms, longest);
      EXPECT_GE(ms, longest / 2);
    }
    pause.reset();
  }
}

TEST(GrowingPauseTest, is_another_one_for_each) {
  std::set<int> pauses;
  for (int i = 0; i < 1000; ++i)
    pauses.insert(GrowingPause(10000, 30000).next());
  EXPECT_GT(pauses.size(), 500U);
}

TEST(GrowingPauseTest, takes_any_part_between_a_half_and_all) {
  struct Row {
    int first_ms;
    int longest_ms;
    std::set<int> pauses;
  };
  const Row rows[] = {
      {1, 9, {1}},        {2, 9, {1, 2}}, {3, 9, {2, 3}}, {8, 9, {4, 5, 6, 7, 8}},
      {20, 4, {2, 3, 4}}, // no pause is longer than the longest
      {0, 9, {1}},        // nor is any none
      {0, 0, {1}},
  };
  for (const Row &row : rows) {
    std::set<int> pauses;
    for (int i = 0; i < 1000; ++i)
      pauses.insert(GrowingPause(row.first_ms, row.longest_ms).next());
    EXPECT_EQ(pauses, row.pauses) << row.first_ms << ' ' << row.longest_ms;
  }
}

TEST(GrowingPauseTest, stays_the_longest_also_where_twice_of_it_is_no_number) {
  constexpr int longest_ms = std::numeric_limits<int>::max();
  GrowingPause pause(longest_ms / 2 + 1, longest_ms);
  for (int i = 0; i < 3; ++i)
    EXPECT_GT(pause.next(), longest_ms / 5);
}

} // namespace buttondriver::bridge::test
