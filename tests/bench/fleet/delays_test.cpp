// SPDX-License-Identifier: Apache-2.0
#include "fleet/panels/delays.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace buttondriver::fleet {
namespace {

TEST(StampTest, is_a_line_that_tells_its_age) {
  const std::string stamp = stamp_now();
  EXPECT_EQ(stamp.size(), 16U);
  const auto age = age_of(stamp);
  ASSERT_TRUE(age);
  EXPECT_GE(*age, 0);
  EXPECT_LE(*age, *age_of(stamp)) << "it grows older";
}

TEST(StampTest, is_in_nanoseconds) {
  const auto earlier = age_of("0000000000000000");
  const auto later = age_of("000000000000000a");
  ASSERT_TRUE(earlier && later);
  EXPECT_GT(*earlier, 1'000'000'000) << "this machine has run for longer than a second";
  EXPECT_LE(*earlier, *later + 10);
}

TEST(StampTest, is_no_other_text) {
  for (const char *text : {"", "0", "Hello", "00000000000000000", "000000000000000", "000000000000000x",
                           "-000000000000001", "ffffffffffffffff", " 00000000000000a"})
    EXPECT_FALSE(age_of(text)) << text;
}

TEST(DelaysTest, of_a_hundred_the_99th_is_the_second_longest) {
  std::vector<std::int64_t> seconds(100);
  std::iota(seconds.begin(), seconds.end(), 1);
  std::reverse(seconds.begin(), seconds.end());
  for (std::int64_t &nanoseconds : seconds)
    nanoseconds *= 1'000'000'000;
  const Delays delays = delays_of(seconds);
  EXPECT_EQ(delays.count, 100U);
  EXPECT_DOUBLE_EQ(delays.median, 50);
  EXPECT_DOUBLE_EQ(delays.p99, 99);
  EXPECT_DOUBLE_EQ(delays.longest, 100);
}

TEST(DelaysTest, of_one_are_that_one_and_of_none_zero) {
  const Delays one = delays_of({2'000'000'000});
  EXPECT_DOUBLE_EQ(one.median, 2);
  EXPECT_DOUBLE_EQ(one.p99, 2);
  EXPECT_DOUBLE_EQ(one.longest, 2);
  EXPECT_EQ(delays_of({}).count, 0U);
}

} // namespace
} // namespace buttondriver::fleet
