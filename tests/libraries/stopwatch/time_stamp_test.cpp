// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/stopwatch.h"

#include "libraries/stopwatch/captured_stream.h"
#include "libraries/stopwatch/report_of.h"
#include "libraries/stopwatch/test_clock.h"
#include "libraries/stopwatch/time_zone.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace stopwatch {
namespace {

using test::CapturedStream;
using test::report_of;
using test::TestClock;
using test::TimeZone;

void expect_time(const timeval &time, time_t seconds, test::Microseconds microseconds) {
  EXPECT_EQ(time.tv_sec, seconds);
  EXPECT_EQ(time.tv_usec, microseconds);
}

TEST(TimeStampTest, begins_without_an_end_time) { expect_time(TimeStamp("boot", "until ready", true).endTime(), 0, 0); }

TEST(TimeStampTest, takes_the_times_of_start_and_stop) {
  TestClock clock(1000, 1);
  TimeStamp stamp("boot", "", false, clock.clock());
  stamp.start();
  clock.set(1500, 2);
  stamp.start();
  clock.set(2000, 3);
  stamp.stop();
  expect_time(stamp.startTime(), 1000, 1);
  expect_time(stamp.endTime(), 2000, 3);
}

TEST(TimeStampTest, reports_local_times_with_truncated_milliseconds) {
  struct Row {
    const char *zone;
    timeval start;
    timeval end;
    const char *report;
  };
  // 1000000000 is 2001-09-09 01:46:40 UTC.
  const Row rows[] = {
      {"UTC0",
       {1000000000, 0},
       {1000000000, 999999},
       "boot           until ready                        01:46:40.000 01:46:40.999 "},
      {"EAST-5:30",
       {1000000000, 1999},
       {1000000001, 50000},
       "boot           until ready                        07:16:40.001 07:16:41.050 "},
      {"WEST8",
       {1000000000, 999},
       {1000000020, 123456},
       "boot           until ready                        17:46:40.000 17:47:00.123 "},
      {"UTC0", {5, 7000}, {86399, 0}, "boot           until ready                        00:00:05.007 23:59:59.000 "},
  };
  for (const Row &row : rows) {
    const TimeZone zone(row.zone);
    TestClock clock(row.start.tv_sec, row.start.tv_usec);
    TimeStamp stamp("boot", "until ready", false, clock.clock());
    stamp.start();
    clock.set(row.end.tv_sec, row.end.tv_usec);
    stamp.stop();
    EXPECT_EQ(report_of(stamp), row.report) << row.zone;
  }
}

TEST(TimeStampTest, reset_forgets_the_end_time) {
  TestClock clock(1000, 1);
  TimeStamp stamp("boot", "", false, clock.clock());
  stamp.start();
  stamp.stop();
  stamp.start();
  stamp.reset();
  expect_time(stamp.endTime(), 0, 0);
}

/// Notes whether an event ran while something was written.
class RunningProbe : public std::stringbuf {
public:
  void watch(const Event &event) { _event = &event; }
  const std::vector<bool> &seen() const { return _seen; }

protected:
  std::streamsize xsputn(const char *text, std::streamsize count) override {
    _seen.push_back(_event->running());
    return std::stringbuf::xsputn(text, count);
  }

private:
  const Event *_event = nullptr;
  std::vector<bool> _seen;
};

TEST(TimeStampTest, reports_a_completed_stop_before_it_stops_running_when_auto_report_is_set) {
  const TimeZone zone("UTC0");
  TestClock clock(60, 0);
  TimeStamp stamp("boot", "until ready", false, clock.clock());
  stamp.setAutoReport(true);
  stamp.start();
  clock.set(61, 0);
  const CapturedStream output(std::cout);
  RunningProbe probe;
  probe.watch(stamp);
  std::streambuf *const captured = std::cout.rdbuf(&probe);
  stamp.stop();
  std::cout.rdbuf(captured);
  EXPECT_EQ(probe.str(), "boot           until ready                        00:01:00.000 00:01:01.000 \n");
  ASSERT_FALSE(probe.seen().empty());
  for (const bool running : probe.seen())
    EXPECT_TRUE(running);
  EXPECT_FALSE(stamp.running());
}

} // namespace
} // namespace stopwatch
