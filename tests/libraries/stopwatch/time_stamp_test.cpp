// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/stopwatch.h"

#include "libraries/stopwatch/captured_stream.h"
#include "libraries/stopwatch/golden_headers.h"
#include "libraries/stopwatch/test_clock.h"
#include "libraries/stopwatch/time_zone.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace stopwatch {
namespace {

using test::CapturedStream;
using test::TestClock;
using test::time_stamp_header;
using test::TimeZone;

const char row_of_nothing[] = "boot           until ready                        00:00:00.000 00:00:00.000 ";

std::string report_of(const Event &event) {
  std::ostringstream stream;
  event.report(stream);
  return stream.str();
}

void expect_time(const timeval &time, time_t seconds, suseconds_t microseconds) {
  EXPECT_EQ(time.tv_sec, seconds);
  EXPECT_EQ(time.tv_usec, microseconds);
}

TEST(TimeStampTest, begins_with_no_times) {
  const TimeStamp stamp("boot", "until ready", true);
  EXPECT_EQ(stamp.name(), "boot");
  EXPECT_EQ(stamp.description(), "until ready");
  EXPECT_EQ(stamp.type(), 1);
  EXPECT_TRUE(stamp.verbose());
  EXPECT_FALSE(stamp.headerPending());
  EXPECT_FALSE(stamp.autoReport());
  EXPECT_FALSE(stamp.running());
  expect_time(stamp.startTime(), 0, 0);
  expect_time(stamp.endTime(), 0, 0);
}

TEST(TimeStampTest, takes_the_times_of_start_and_stop) {
  TestClock clock(1000, 1);
  TimeStamp stamp("boot", "", false, clock.clock());
  stamp.start();
  EXPECT_TRUE(stamp.running());
  clock.set(1500, 2);
  stamp.start();
  EXPECT_EQ(clock.readings(), 1);
  clock.set(2000, 3);
  stamp.stop();
  EXPECT_FALSE(stamp.running());
  expect_time(stamp.startTime(), 1000, 1);
  expect_time(stamp.endTime(), 2000, 3);
}

TEST(TimeStampTest, stop_without_start_changes_nothing) {
  TestClock clock(1000, 1);
  TimeStamp stamp("boot", "", true, clock.clock());
  stamp.setAutoReport(true);
  CapturedStream output(std::cout);
  stamp.stop();
  EXPECT_EQ(clock.readings(), 0);
  EXPECT_FALSE(stamp.running());
  expect_time(stamp.endTime(), 0, 0);
  EXPECT_EQ(output.take(), "");
}

TEST(TimeStampTest, is_silent_unless_verbose) {
  TestClock clock(1000, 0);
  TimeStamp stamp("boot", "", false, clock.clock());
  CapturedStream output(std::cout);
  CapturedStream errors(std::cerr);
  stamp.start();
  stamp.stop();
  EXPECT_EQ(output.take(), "");
  EXPECT_EQ(errors.take(), "");
}

TEST(TimeStampTest, tells_its_readings_when_verbose) {
  TestClock clock(1000, 5);
  TimeStamp stamp("boot", "", true, clock.clock());
  CapturedStream output(std::cout);
  stamp.start();
  EXPECT_EQ(output.take(), "Getting the starting time...\n_startTime = 1000 seconds, 5 usecs.\n");
  clock.set(1001, 999999);
  stamp.stop();
  EXPECT_EQ(output.take(), "Getting the end time...\n_endTime = 1001 seconds, 999999 usecs.\n");
}

TEST(TimeStampTest, runs_when_the_clock_fails_at_start) {
  TestClock clock(1000, 0);
  TimeStamp stamp("boot", "", true, clock.clock());
  CapturedStream output(std::cout);
  CapturedStream errors(std::cerr);
  clock.fail(true);
  stamp.start();
  EXPECT_TRUE(stamp.running());
  EXPECT_EQ(errors.take(), "TimeStamp::start(): gettimeofday() failed\n");
  EXPECT_EQ(output.take(), "Getting the starting time...\n_startTime = 0 seconds, 0 usecs.\n");
}

TEST(TimeStampTest, goes_on_running_when_the_clock_fails_at_stop) {
  TestClock clock(1000, 0);
  TimeStamp stamp("boot", "", true, clock.clock());
  stamp.setAutoReport(true);
  CapturedStream output(std::cout);
  CapturedStream errors(std::cerr);
  stamp.start();
  output.take();
  clock.fail(true);
  stamp.stop();
  EXPECT_TRUE(stamp.running());
  EXPECT_EQ(errors.take(), "TimeStamp::stop():  gettimeofday() failed\n");
  EXPECT_EQ(output.take(), "Getting the end time...\n");

  clock.fail(false);
  clock.set(1003, 0);
  stamp.stop();
  EXPECT_FALSE(stamp.running());
  expect_time(stamp.endTime(), 1003, 0);
}

TEST(TimeStampTest, prints_its_header) {
  std::ostringstream stream;
  TimeStamp("boot", "until ready", false).printHeader(stream);
  EXPECT_EQ(stream.str(), time_stamp_header);
  EXPECT_EQ(stream.flags() & std::ios_base::adjustfield, std::ios_base::fmtflags{});
}

TEST(TimeStampTest, every_report_begins_with_the_header_while_that_is_pending) {
  const TimeZone zone("UTC0");
  TimeStamp stamp("boot", "until ready", false);
  stamp.setHeaderPending(true);
  EXPECT_EQ(report_of(stamp), time_stamp_header + row_of_nothing);
  EXPECT_EQ(report_of(stamp), time_stamp_header + row_of_nothing);
  stamp.setHeaderPending(false);
  EXPECT_EQ(report_of(stamp), row_of_nothing);
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

TEST(TimeStampTest, long_texts_are_not_cut) {
  const TimeZone zone("UTC0");
  EXPECT_EQ(report_of(TimeStamp("sixteen letters!", "a description of thirty-six letters!", false)),
            "sixteen letters!a description of thirty-six letters!00:00:00.000 00:00:00.000 ");
}

TEST(TimeStampTest, report_leaves_no_alignment_and_nothing_else_changed) {
  const TimeZone zone("UTC0");
  for (const std::ios_base::fmtflags before : {std::ios_base::fmtflags{}, std::ios_base::left, std::ios_base::right}) {
    std::ostringstream stream;
    stream.flags(before | std::ios_base::hex | std::ios_base::scientific);
    stream.precision(9);
    TimeStamp("boot", "until ready", false).report(stream);
    EXPECT_EQ(stream.str(), row_of_nothing);
    EXPECT_EQ(stream.flags(), std::ios_base::hex | std::ios_base::scientific);
    EXPECT_EQ(stream.precision(), 9);
  }
}

TEST(TimeStampTest, reset_forgets_the_times_and_the_pending_header) {
  TestClock clock(1000, 1);
  TimeStamp stamp("boot", "", false, clock.clock());
  stamp.start();
  stamp.stop();
  stamp.start();
  stamp.setHeaderPending(true);
  stamp.setAutoReport(true);
  stamp.reset();
  EXPECT_FALSE(stamp.running());
  EXPECT_FALSE(stamp.headerPending());
  EXPECT_TRUE(stamp.autoReport());
  expect_time(stamp.startTime(), 0, 0);
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
