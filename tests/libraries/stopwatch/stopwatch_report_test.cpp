// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/stopwatch.h"

#include "libraries/stopwatch/captured_stream.h"
#include "libraries/stopwatch/golden_headers.h"
#include "libraries/stopwatch/test_clock.h"
#include "libraries/stopwatch/time_zone.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace stopwatch {
namespace {

using buttondriver::test::read_file;
using buttondriver::test::TemporaryFolder;
using test::CapturedStream;
using test::delta_header;
using test::TestClock;
using test::time_stamp_header;
using test::TimeZone;

// Rows of events that were never started, in the time zone UTC.
const std::string draw = "draw           one screen                         0                    0.000       0.000\n";
const std::string text = "text           one line                           0                    0.000       0.000\n";
const std::string boot = "boot           until ready                        00:00:00.000 00:00:00.000 \n";
const std::string load = "load           all fonts                          00:00:00.000 00:00:00.000 \n";

class StopWatchReportTest : public testing::Test {
protected:
  /// Both kinds in turn, each with the mode of its place.
  void addFour(StopWatch &watch, const std::int32_t (&modes)[4]) {
    watch.addEvent("boot", "until ready", time_stamp_event, modes[0]);
    watch.addEvent("draw", "one screen", delta_event, modes[1]);
    watch.addEvent("load", "all fonts", time_stamp_event, modes[2]);
    watch.addEvent("text", "one line", delta_event, modes[3]);
  }

  const TemporaryFolder _folder;
  const std::string _log = _folder.path("times.log");
  const TimeZone _zone{"UTC0"};
  CapturedStream _output{std::cout};
};

TEST_F(StopWatchReportTest, prints_each_kind_under_one_header_in_table_order) {
  StopWatch watch(4, "", false);
  addFour(watch, {1, 1, 1, 1});
  const std::string expected = delta_header + draw + text + "\n" + time_stamp_header + boot + load + "\n";
  watch.reportAll();
  EXPECT_EQ(_output.take(), expected);
  watch.reportAll();
  EXPECT_EQ(_output.take(), expected);
}

TEST_F(StopWatchReportTest, prints_the_measurements) {
  TestClock clock(1000, 0);
  StopWatch watch(2, "", false, clock.clock());
  Event *interval = watch.addEvent("draw", "one screen", delta_event, log_to_standard_output);
  Event *stamp = watch.addEvent("boot", "until ready", time_stamp_event, log_to_standard_output);
  stamp->start();
  for (const test::Microseconds microseconds : {10000, 20000, 30000}) {
    clock.set(1000, 0);
    interval->start();
    clock.set(1000, microseconds);
    interval->stop();
  }
  stamp->stop();
  watch.reportAll();
  EXPECT_EQ(_output.take(),
            delta_header +
                "draw           one screen                         3                   20.000      30.000\n" + "\n" +
                time_stamp_header + "boot           until ready                        00:16:40.000 00:16:40.030 \n" +
                "\n");
}

TEST_F(StopWatchReportTest, is_two_empty_lines_for_an_empty_table) {
  StopWatch watch(4, _log, false);
  watch.reportAll();
  EXPECT_EQ(_output.take(), "\n\n");
  EXPECT_EQ(read_file(_log), "");
}

TEST_F(StopWatchReportTest, goes_where_the_log_modes_say) {
  struct Row {
    const char *name;
    std::int32_t modes[4];
    std::string output;
    std::string log;
  };
  const Row rows[] = {
      {"all to standard output",
       {1, 1, 1, 1},
       delta_header + draw + text + "\n" + time_stamp_header + boot + load + "\n",
       ""},
      {"all to the log file", {2, 2, 2, 2}, "\n\n", delta_header + draw + text + time_stamp_header + boot + load},
      {"all to both",
       {3, 3, 3, 3},
       delta_header + draw + text + "\n" + time_stamp_header + boot + load + "\n",
       delta_header + draw + text + time_stamp_header + boot + load},
      {"all nowhere", {0, 0, 0, 0}, "\n\n", ""},
      {"the first of a kind nowhere", {0, 0, 1, 2}, "\n" + time_stamp_header + load + "\n", delta_header + text},
      {"the header only where the first of a kind goes",
       {1, 2, 3, 1},
       text + "\n" + time_stamp_header + boot + load + "\n",
       delta_header + draw + load},
      {"an unknown mode takes the header along", {4, -1, 1, 3}, text + "\n" + load + "\n", text},
  };
  for (const Row &row : rows) {
    StopWatch watch(4, _log, false);
    addFour(watch, row.modes);
    watch.reportAll();
    EXPECT_EQ(_output.take(), row.output) << row.name;
    EXPECT_EQ(read_file(_log), row.log) << row.name;
  }
}

TEST_F(StopWatchReportTest, goes_to_standard_output_without_a_log_file_whatever_mode_was_asked_for) {
  for (const std::int32_t mode : {0, 1, 2, 3}) {
    StopWatch watch(1, "", false);
    watch.addEvent("draw", "one screen", delta_event, mode);
    watch.reportAll();
    EXPECT_EQ(_output.take(), delta_header + draw + "\n\n") << mode;
  }
}

TEST_F(StopWatchReportTest, a_log_file_set_later_does_not_change_the_modes) {
  StopWatch watch(2, "", false);
  watch.addEvent("draw", "one screen", delta_event, log_to_file);
  EXPECT_TRUE(watch.setLogFile(_log));
  watch.addEvent("text", "one line", delta_event, log_to_file);
  watch.reportAll();
  EXPECT_EQ(_output.take(), delta_header + draw + "\n\n");
  EXPECT_EQ(read_file(_log), text);
}

TEST_F(StopWatchReportTest, follows_a_changed_log_mode_of_the_first_event_of_a_name) {
  StopWatch watch(2, _log, false);
  watch.addEvent("draw", "one screen", delta_event, log_to_standard_output);
  watch.addEvent("draw", "one screen", delta_event, log_to_standard_output);
  EXPECT_TRUE(watch.setLogMode("draw", log_to_file));
  watch.reportAll();
  EXPECT_EQ(_output.take(), draw + "\n\n");
  EXPECT_EQ(read_file(_log), delta_header + draw);
}

TEST_F(StopWatchReportTest, goes_to_the_new_log_file_after_a_change) {
  const std::string other = _folder.path("other.log");
  StopWatch watch(1, _log, false);
  watch.addEvent("draw", "one screen", delta_event, log_to_file);
  watch.reportAll();
  EXPECT_TRUE(watch.setLogFile(other));
  watch.reportAll();
  watch.reportAll();
  EXPECT_EQ(read_file(_log), delta_header + draw);
  EXPECT_EQ(read_file(other), delta_header + draw + delta_header + draw);
  EXPECT_TRUE(watch.setLogFile(other));
  EXPECT_EQ(read_file(other), "");
}

TEST_F(StopWatchReportTest, prints_and_takes_back_a_header_that_was_pending_already) {
  StopWatch watch(4, "", false);
  addFour(watch, {1, 1, 1, 1});
  watch.findEvent("text")->setHeaderPending(true);
  watch.reportAll();
  EXPECT_EQ(_output.take(), delta_header + draw + delta_header + text + "\n" + time_stamp_header + boot + load + "\n");
  for (const char *name : {"draw", "text", "boot", "load"})
    EXPECT_FALSE(watch.findEvent(name)->headerPending()) << name;
}

TEST_F(StopWatchReportTest, passes_over_an_entry_without_event_in_silence) {
  CapturedStream errors(std::cerr);
  StopWatch watch(2, "", false);
  watch.addEvent("odd", "", 7, log_to_standard_output);
  watch.addEvent("draw", "one screen", delta_event, log_to_standard_output);
  errors.take();
  watch.reportAll();
  EXPECT_EQ(_output.take(), delta_header + draw + "\n\n");
  EXPECT_EQ(errors.take(), "");
}

TEST_F(StopWatchReportTest, destruction_reports_only_when_set_and_prints_the_deleting_only_when_verbose) {
  struct Row {
    bool report;
    bool verbose;
    std::string output;
  };
  const std::string report = delta_header + draw + text + "\n" + time_stamp_header + boot + load + "\n";
  const std::string deleting = "Deleting event 'boot' now.\nDeleting event 'draw' now.\n"
                               "Deleting event 'load' now.\nDeleting event 'text' now.\n";
  const Row rows[] = {
      {false, false, ""}, {false, true, deleting}, {true, false, report}, {true, true, report + deleting}};
  for (const Row &row : rows) {
    {
      StopWatch watch(4, _log, row.verbose);
      addFour(watch, {3, 3, 3, 3});
      watch.setReportOnDestruction(row.report);
      EXPECT_EQ(_output.take(), "");
    }
    EXPECT_EQ(_output.take(), row.output);
    EXPECT_EQ(read_file(_log), row.report ? delta_header + draw + text + time_stamp_header + boot + load : "");
  }
}

TEST_F(StopWatchReportTest, destruction_prints_only_the_events_still_in_the_table) {
  const CapturedStream errors(std::cerr);
  Event *deleted = nullptr;
  {
    StopWatch watch(4, _log, true);
    watch.addEvent("a", "", delta_event, log_nowhere);
    watch.addEvent("odd", "", 7, log_nowhere);
    deleted = watch.addEvent("b", "", delta_event, log_nowhere);
    watch.addEvent("c", "", time_stamp_event, log_nowhere);
    EXPECT_TRUE(watch.deleteEvent("b"));
    EXPECT_EQ(_output.take(), "");
  }
  EXPECT_EQ(_output.take(), "Deleting event 'a' now.\nDeleting event 'c' now.\n");
  delete deleted;
}

} // namespace
} // namespace stopwatch
