// SPDX-License-Identifier: Apache-2.0
#include "bridge/pauses/growing_pause.h"

#include <gtest/gtest.h>

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

TEST(GrowingPauseTest, is_never_none) {
  GrowingPause pause(0, 0);
  EXPECT_EQ(pause.next(), 1);
  EXPECT_EQ(pause.next(), 1);
}

} // namespace buttondriver::bridge::test
