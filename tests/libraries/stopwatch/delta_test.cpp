// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/stopwatch.h"

#include "libraries/stopwatch/captured_stream.h"
#include "libraries/stopwatch/report_of.h"
#include "libraries/stopwatch/test_clock.h"

#include <gtest/gtest.h>

namespace stopwatch {
namespace {

using test::CapturedStream;
using test::report_of;
using test::TestClock;

const char row_after_three_intervals[] =
    "draw           one screen                         3                   20.000      30.000";

void expect_nothing_measured(const Delta &delta) {
  EXPECT_EQ(delta.samples(), 0);
  EXPECT_EQ(delta.total(), 0.0);
  EXPECT_EQ(delta.average(), 0.0);
  EXPECT_EQ(delta.last(), 0.0);
}

/// Intervals of 10, 20 and 30 ms, the second one across the end of a second.
void measure_three_intervals(Delta &delta, TestClock &clock) {
  struct Reading {
    time_t seconds;
    test::Microseconds microseconds;
  };
  const Reading readings[][2] = {
      {{1000, 500000}, {1000, 510000}}, {{1000, 990000}, {1001, 10000}}, {{1002, 0}, {1002, 30000}}};
  for (const auto &[start, end] : readings) {
    clock.set(start.seconds, start.microseconds);
    delta.start();
    clock.set(end.seconds, end.microseconds);
    delta.stop();
  }
}

TEST(DeltaTest, begins_with_nothing_measured) { expect_nothing_measured(Delta("draw", "one screen", true)); }

TEST(DeltaTest, three_intervals_of_10_20_and_30_ms_average_20_ms) {
  TestClock clock(0, 0);
  Delta delta("draw", "one screen", false, clock.clock());
  measure_three_intervals(delta, clock);
  EXPECT_EQ(delta.samples(), 3);
  EXPECT_DOUBLE_EQ(delta.total(), 60.0);
  EXPECT_DOUBLE_EQ(delta.average(), 20.0);
  EXPECT_DOUBLE_EQ(delta.last(), 30.0);
  EXPECT_FALSE(delta.running());
  EXPECT_EQ(report_of(delta), row_after_three_intervals);
}

TEST(DeltaTest, started_twice_measures_one_interval_from_the_first_start) {
  TestClock clock(1000, 0);
  Delta delta("draw", "", false, clock.clock());
  delta.start();
  clock.set(1000, 7000);
  delta.start();
  clock.set(1000, 9000);
  delta.stop();
  EXPECT_EQ(delta.samples(), 1);
  EXPECT_DOUBLE_EQ(delta.last(), 9.0);
}

TEST(DeltaTest, second_stop_keeps_the_measurements) {
  TestClock clock(1000, 0);
  Delta delta("draw", "", false, clock.clock());
  measure_three_intervals(delta, clock);
  delta.setVerbose(true);
  delta.setAutoReport(true);
  clock.set(5000, 0);
  CapturedStream output(std::cout);
  delta.stop();
  EXPECT_EQ(output.take(), "");
  EXPECT_EQ(clock.readings(), 6);
  EXPECT_EQ(delta.samples(), 3);
  EXPECT_DOUBLE_EQ(delta.total(), 60.0);
  EXPECT_DOUBLE_EQ(delta.average(), 20.0);
  EXPECT_DOUBLE_EQ(delta.last(), 30.0);
  EXPECT_EQ(delta.startTime().tv_sec, 1002);
  EXPECT_EQ(delta.startTime().tv_usec, 0);
  EXPECT_FALSE(delta.running());
}

TEST(DeltaTest, measures_nothing_when_the_clock_fails_at_stop) {
  TestClock clock(1000, 0);
  Delta delta("draw", "", false, clock.clock());
  const CapturedStream errors(std::cerr);
  delta.start();
  clock.fail(true);
  delta.stop();
  EXPECT_EQ(delta.samples(), 0);
  EXPECT_EQ(delta.last(), 0.0);
  clock.fail(false);
  clock.set(1000, 4000);
  delta.stop();
  EXPECT_EQ(delta.samples(), 1);
  EXPECT_DOUBLE_EQ(delta.last(), 4.0);
}

TEST(DeltaTest, keeps_the_direction_of_a_clock_that_was_set_back) {
  TestClock clock(1000, 2000);
  Delta delta("draw", "", false, clock.clock());
  delta.start();
  clock.set(999, 999500);
  delta.stop();
  EXPECT_DOUBLE_EQ(delta.last(), -2.5);
}

TEST(DeltaTest, reports_each_completed_stop_when_auto_report_is_set) {
  TestClock clock(0, 0);
  Delta delta("draw", "one screen", false, clock.clock());
  delta.setAutoReport(true);
  CapturedStream output(std::cout);
  measure_three_intervals(delta, clock);
  EXPECT_EQ(output.take(),
            "draw           one screen                         1                   10.000      10.000\n"
            "draw           one screen                         2                   15.000      20.000\n"
            "draw           one screen                         3                   20.000      30.000\n");
}

TEST(DeltaTest, reset_forgets_the_intervals) {
  TestClock clock(0, 0);
  Delta delta("draw", "one screen", false, clock.clock());
  measure_three_intervals(delta, clock);
  delta.start();
  delta.reset();
  expect_nothing_measured(delta);
}

TEST(DeltaTest, intervals_are_rounded_to_three_decimals) {
  TestClock clock(1000, 0);
  Delta delta("draw", "", false, clock.clock());
  for (const test::Microseconds microseconds : {1, 1, 2}) {
    clock.set(1000, 0);
    delta.start();
    clock.set(1000, microseconds);
    delta.stop();
  }
  EXPECT_EQ(report_of(delta),
            "draw                                              3                    0.001       0.002");
}

} // namespace
} // namespace stopwatch
