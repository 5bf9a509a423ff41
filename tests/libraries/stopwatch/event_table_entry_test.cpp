// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/stopwatch.h"

#include "libraries/stopwatch/captured_stream.h"
#include "libraries/stopwatch/test_clock.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace stopwatch {
namespace {

using test::CapturedStream;
using test::TestClock;

TEST(EventTableEntryTest, creates_the_event_of_its_type) {
  TestClock clock(1000, 5);
  CapturedStream errors(std::cerr);
  const EventTableEntry interval("draw", "one screen", 0, false, clock.clock());
  const EventTableEntry stamp("boot", "until ready", 1, true, clock.clock());
  EXPECT_EQ(errors.take(), "");

  const auto *delta = dynamic_cast<Delta *>(interval.event());
  ASSERT_NE(delta, nullptr);
  EXPECT_EQ(delta->name(), "draw");
  EXPECT_EQ(delta->description(), "one screen");
  EXPECT_FALSE(delta->verbose());
  interval.event()->start();
  EXPECT_EQ(delta->startTime().tv_sec, 1000);

  const auto *time_stamp = dynamic_cast<TimeStamp *>(stamp.event());
  ASSERT_NE(time_stamp, nullptr);
  EXPECT_EQ(time_stamp->name(), "boot");
  EXPECT_EQ(time_stamp->description(), "until ready");
  EXPECT_TRUE(time_stamp->verbose());
}

TEST(EventTableEntryTest, has_no_event_of_an_unknown_type) {
  struct Row {
    std::int32_t type;
    const char *text;
  };
  const Row rows[] = {
      {2, "EventTableEntry():  Unknown Event type '2'"},
      {-1, "EventTableEntry():  Unknown Event type '-1'"},
      {std::numeric_limits<std::int32_t>::min(), "EventTableEntry():  Unknown Event type '-2147483648'"},
  };
  for (const Row &row : rows) {
    CapturedStream errors(std::cerr);
    const EventTableEntry entry("draw", "one screen", row.type, false);
    EXPECT_EQ(entry.event(), nullptr);
    EXPECT_EQ(errors.take(), row.text);
  }
}

} // namespace
} // namespace stopwatch
