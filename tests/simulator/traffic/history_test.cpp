// SPDX-License-Identifier: Apache-2.0
#include "simulator/traffic/history.h"

#include <gtest/gtest.h>

#include <string>

namespace buttondriver::simulator {
namespace {

TEST(HistoryTest, is_empty_at_first) {
  const History<std::string> history(3);
  EXPECT_EQ(history.size(), 0U);
  EXPECT_EQ(history.last(), 0U);
  EXPECT_EQ(history.first(), 1U);
}

TEST(HistoryTest, keeps_the_newest_under_their_numbers) {
  History<std::string> history(3);
  for (const char *text : {"one", "two", "three", "four", "five"})
    history.add(text);
  EXPECT_EQ(history.size(), 3U);
  EXPECT_EQ(history.first(), 3U);
  EXPECT_EQ(history.last(), 5U);
  EXPECT_EQ(history.at(3), "three");
  EXPECT_EQ(history.at(5), "five");
}

TEST(HistoryTest, numbers_go_on_after_it_was_emptied) {
  History<std::string> history(3);
  history.add("one");
  EXPECT_EQ(history.cleared(), 0U);
  history.clear();
  EXPECT_EQ(history.cleared(), 1U);
  EXPECT_EQ(history.size(), 0U);
  EXPECT_EQ(history.last(), 1U);
  EXPECT_EQ(history.first(), 2U);
  history.add("two");
  EXPECT_EQ(history.at(2), "two");
  EXPECT_EQ(history.cleared(), 1U);
}

} // namespace
} // namespace buttondriver::simulator
