// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/topic_levels.h"
#include "bridge/topics/topic_match.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace buttondriver::bridge {
namespace {

TEST(TopicTableTest, has_the_example_of_each_row_in_that_row) {
  for (const TopicRow &row : topic_table) {
    const Outcome<TopicMatch> match = match_topic(row.example);
    ASSERT_TRUE(match) << row.example;
    EXPECT_STREQ(match->row->pattern, row.pattern) << row.example;
  }
}

TEST(TopicTableTest, takes_its_ranges_from_the_catalogue) {
  struct Range {
    const char *pattern;
    std::size_t level;
    std::int64_t lowest;
    std::int64_t highest;
    bool takes_all;
  };
  const Range ranges[] = {
      {"led/<button>", 1, 0, 23, true},
      {"status/<led>", 1, 0, 31, false},
      {"toggle/<indicator>", 1, 0, 1, false},
      {"screen/<screen>/line/<line>", 1, 0, 2, true},
      {"screen/<screen>/line/<line>", 3, 0, 127, false},
      {"screen/<screen>/line/<line>/inverse", 3, 0, 127, false},
      {"screen/<screen>/part", 1, 0, 2, true},
      {"screen/<screen>/part/<name>", 1, 0, 2, true},
      {"screen/<screen>/image/<x>/<y>", 3, 0, 127, false},
      {"screen/<screen>/image/<x>/<y>", 4, 0, 127, false},
      {"screen/<screen>/blackout", 1, 0, 2, true},
  };
  for (const Range &range : ranges) {
    SCOPED_TRACE(range.pattern);
    for (std::size_t i = 0; i < std::size(topic_table); ++i) {
      if (topic_table[i].pattern != std::string(range.pattern))
        continue;
      EXPECT_EQ(topic_patterns[i].ranges[range.level].lowest, range.lowest);
      EXPECT_EQ(topic_patterns[i].ranges[range.level].highest, range.highest);
      EXPECT_EQ(topic_patterns[i].ranges[range.level].takes_all, range.takes_all);
    }
  }
}

TEST(TopicTableTest, minus_one_is_all_only_where_it_is_no_number_of_the_field) {
  const MessageType &led = *find_message_type(BMS_SetLEDState::code);
  EXPECT_TRUE(range_of(led.fields[1], "<button>").takes_all);
  const LevelRange state = range_of(led.fields[2], "<state>"); // -1 is a state: blinking
  EXPECT_FALSE(state.takes_all);
  EXPECT_EQ(state.lowest, 0);
  EXPECT_EQ(state.highest, 1);
}

TEST(TopicTableTest, a_topic_has_five_levels_at_most) {
  EXPECT_EQ(TopicLevels::of("").count, 1U);
  EXPECT_EQ(TopicLevels::of("a/b").count, 2U);
  EXPECT_EQ(TopicLevels::of("a/b").level[1], "b");
  EXPECT_EQ(TopicLevels::of("1/2/3/4/5").count, 5U);
  EXPECT_EQ(TopicLevels::of("1/2/3/4/5/6/7/8").count, 6U);
}

} // namespace
} // namespace buttondriver::bridge
