// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/stopwatch.h"

#include "libraries/stopwatch/captured_stream.h"
#include "libraries/stopwatch/test_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace stopwatch {
namespace {

using buttondriver::test::read_file;
using buttondriver::test::TemporaryFolder;
using test::CapturedStream;
using test::TestClock;

void write_file(const std::string &path, const std::string &content) { std::ofstream(path) << content; }

TEST(StopWatchTest, adds_events_of_both_kinds) {
  StopWatch watch(2, "", false);
  Event *draw = watch.addEvent("draw", "one screen", delta_event, log_to_standard_output);
  Event *boot = watch.addEvent("boot", "until ready", time_stamp_event, log_to_standard_output);
  ASSERT_NE(dynamic_cast<Delta *>(draw), nullptr);
  ASSERT_NE(dynamic_cast<TimeStamp *>(boot), nullptr);
  EXPECT_EQ(draw->name(), "draw");
  EXPECT_EQ(draw->description(), "one screen");
  EXPECT_EQ(boot->name(), "boot");
  EXPECT_EQ(boot->description(), "until ready");
}

TEST(StopWatchTest, hands_its_clock_and_verbose_to_its_events) {
  TestClock clock(1000, 5);
  CapturedStream output(std::cout);
  CapturedStream errors(std::cerr);
  for (const bool verbose : {false, true}) {
    StopWatch watch(1, "", verbose, clock.clock());
    Event *draw = watch.addEvent("draw", "", delta_event, log_to_standard_output);
    EXPECT_EQ(draw->verbose(), verbose);
    draw->start();
    EXPECT_EQ(dynamic_cast<Delta &>(*draw).startTime().tv_sec, 1000);
  }
}

TEST(StopWatchTest, refuses_events_beyond_its_maximum) {
  const TemporaryFolder folder;
  struct Row {
    unsigned maximum;
    bool verbose;
    const char *errors;
  };
  const Row rows[] = {
      {2, true,
       "Cannot add new event.  This would exceed the maximum number of events (2)\n"
       "Remove some events using deleteEvent() and try again.\n"},
      {2, false, ""},
      {0, true,
       "Cannot add new event.  This would exceed the maximum number of events (0)\n"
       "Remove some events using deleteEvent() and try again.\n"},
  };
  for (const Row &row : rows) {
    const CapturedStream output(std::cout);
    CapturedStream errors(std::cerr);
    StopWatch watch(row.maximum, folder.path("times.log"), row.verbose);
    for (unsigned i = 0; i < row.maximum; ++i)
      EXPECT_NE(watch.addEvent("fits", "", delta_event, log_to_both), nullptr);
    EXPECT_EQ(errors.take(), "");
    EXPECT_EQ(watch.addEvent("too much", "", delta_event, log_to_both), nullptr);
    EXPECT_EQ(errors.take(), row.errors);
    EXPECT_EQ(watch.findEvent("too much"), nullptr);
  }
}

TEST(StopWatchTest, has_room_again_after_a_deletion) {
  StopWatch watch(1, "", false);
  Event *first = watch.addEvent("first", "", delta_event, log_to_standard_output);
  EXPECT_EQ(watch.addEvent("second", "", delta_event, log_to_standard_output), nullptr);
  EXPECT_TRUE(watch.deleteEvent("first"));
  EXPECT_NE(watch.addEvent("second", "", delta_event, log_to_standard_output), nullptr);
  delete first;
}

TEST(StopWatchTest, warns_about_a_missing_log_file_when_verbose) {
  struct Row {
    bool verbose;
    const char *errors;
  };
  const Row rows[] = {
      {true, "No logfile was specified when creating StopWatch.\n"
             "Entry 'draw' will be created with logging to stdout only.\n"},
      {false, ""},
  };
  for (const Row &row : rows) {
    const CapturedStream output(std::cout);
    CapturedStream errors(std::cerr);
    StopWatch watch(1, "", row.verbose);
    EXPECT_NE(watch.addEvent("draw", "", delta_event, log_to_standard_output), nullptr);
    EXPECT_EQ(errors.take(), row.errors);
  }
}

TEST(StopWatchTest, an_unknown_type_fills_a_place_without_an_event) {
  CapturedStream errors(std::cerr);
  StopWatch watch(2, "", false);
  EXPECT_EQ(watch.addEvent("odd", "", 7, log_to_standard_output), nullptr);
  EXPECT_EQ(errors.take(), "EventTableEntry():  Unknown Event type '7'");
  EXPECT_NE(watch.addEvent("draw", "", delta_event, log_to_standard_output), nullptr);
  EXPECT_EQ(watch.addEvent("third", "", delta_event, log_to_standard_output), nullptr);
}

TEST(StopWatchTest, every_look_up_warns_about_the_entries_without_event_that_it_passes) {
  CapturedStream errors(std::cerr);
  StopWatch watch(5, "", false);
  watch.addEvent("odd", "", 7, log_to_standard_output);
  Event *first = watch.addEvent("first", "", delta_event, log_to_standard_output);
  watch.addEvent("odd", "", 8, log_to_standard_output);
  watch.addEvent("last", "", delta_event, log_to_standard_output);
  watch.addEvent("odd", "", 9, log_to_standard_output);
  const std::string one = "Warning: Event at index 0 is NULL\n";
  const std::string two = one + "Warning: Event at index 2 is NULL\n";
  const std::string three = two + "Warning: Event at index 4 is NULL\n";

  errors.take();
  EXPECT_NE(watch.findEvent("first"), nullptr);
  EXPECT_EQ(errors.take(), one);
  EXPECT_NE(watch.findEvent("last", ""), nullptr);
  EXPECT_EQ(errors.take(), two);
  EXPECT_EQ(watch.findEvent("odd"), nullptr);
  EXPECT_EQ(errors.take(), three);
  EXPECT_TRUE(watch.setLogMode("last", log_nowhere));
  EXPECT_EQ(errors.take(), two);
  EXPECT_TRUE(watch.deleteEvent("first"));
  EXPECT_EQ(errors.take(), one);
  EXPECT_FALSE(watch.deleteEvent("odd"));
  EXPECT_EQ(errors.take(), "Warning: Event at index 0 is NULL\n"
                           "Warning: Event at index 1 is NULL\n"
                           "Warning: Event at index 3 is NULL\n");
  delete first;
}

TEST(StopWatchTest, look_up_finds_the_first_event_of_exactly_that_name) {
  StopWatch watch(6, "", false);
  Event *first = watch.addEvent("draw", "first", delta_event, log_to_standard_output);
  Event *second = watch.addEvent("draw", "second", time_stamp_event, log_to_standard_output);
  Event *longer = watch.addEvent("drawing", "", delta_event, log_to_standard_output);
  Event *with_nul = watch.addEvent(std::string("draw\0", 5), "", delta_event, log_to_standard_output);
  Event *nameless = watch.addEvent("", "", delta_event, log_to_standard_output);
  EXPECT_EQ(watch.findEvent("draw"), first);
  EXPECT_EQ(watch.findEvent("drawing"), longer);
  EXPECT_EQ(watch.findEvent(std::string("draw\0", 5)), with_nul);
  EXPECT_EQ(watch.findEvent(""), nameless);
  for (const char *stranger : {"Draw", "dra", "draw ", "drawings"})
    EXPECT_EQ(watch.findEvent(stranger), nullptr) << stranger;
  EXPECT_EQ(watch.findEvent("draw", "first"), first);
  EXPECT_EQ(watch.findEvent("draw", "second"), second);
  EXPECT_EQ(watch.findEvent("draw", "third"), nullptr);
  EXPECT_EQ(watch.findEvent("drawing", "first"), nullptr);
}

TEST(StopWatchTest, deletes_the_first_event_of_a_name_and_keeps_the_order_of_the_rest) {
  CapturedStream output(std::cout);
  Event *deleted = nullptr;
  {
    StopWatch watch(4, "", false);
    watch.addEvent("a", "", delta_event, log_to_standard_output);
    deleted = watch.addEvent("b", "first", delta_event, log_to_standard_output);
    Event *other = watch.addEvent("b", "second", delta_event, log_to_standard_output);
    watch.addEvent("c", "", delta_event, log_to_standard_output);
    EXPECT_FALSE(watch.deleteEvent("d"));
    EXPECT_TRUE(watch.deleteEvent("b"));
    EXPECT_EQ(watch.findEvent("b"), other);
    EXPECT_EQ(watch.findEvent("b", "first"), nullptr);
    watch.reportAll();
  }
  const std::string text = output.take();
  const std::size_t a = text.find("\na  ");
  const std::size_t b = text.find("\nb              second");
  const std::size_t c = text.find("\nc  ");
  EXPECT_LT(a, b);
  EXPECT_LT(b, c);
  EXPECT_NE(c, std::string::npos);
  EXPECT_EQ(text.find("first"), std::string::npos);
  delete deleted;
}

TEST(StopWatchTest, a_deleted_event_outlives_the_table) {
  TestClock clock(1000, 0);
  Event *held = nullptr;
  Event *forgotten = nullptr;
  {
    const CapturedStream output(std::cout);
    const CapturedStream errors(std::cerr);
    StopWatch watch(2, "", true, clock.clock());
    held = watch.addEvent("draw", "one screen", delta_event, log_to_standard_output);
    forgotten = watch.addEvent("boot", "", time_stamp_event, log_to_standard_output);
    EXPECT_TRUE(watch.deleteEvent("draw"));
    EXPECT_TRUE(watch.deleteEvent("boot"));
  }
  held->setVerbose(false);
  held->start();
  clock.set(1000, 12000);
  held->stop();
  std::ostringstream stream;
  held->report(stream);
  EXPECT_EQ(stream.str(), "draw           one screen                         1                   12.000      12.000");
  EXPECT_EQ(forgotten->name(), "boot");
  delete held;
}

TEST(StopWatchTest, log_modes_that_need_a_log_file_are_refused_without_one) {
  StopWatch watch(1, "", false);
  watch.addEvent("draw", "", delta_event, log_to_standard_output);
  struct Row {
    const char *name;
    std::int32_t mode;
    bool accepted;
  };
  const Row rows[] = {{"draw", 0, true},  {"draw", 1, true},   {"draw", 2, false},
                      {"draw", 3, false}, {"other", 1, false}, {"other", 2, false}};
  for (const Row &row : rows)
    EXPECT_EQ(watch.setLogMode(row.name, row.mode), row.accepted) << row.name << ' ' << row.mode;

  const TemporaryFolder folder;
  EXPECT_TRUE(watch.setLogFile(folder.path("times.log")));
  for (const std::int32_t mode : {0, 1, 2, 3})
    EXPECT_TRUE(watch.setLogMode("draw", mode)) << mode;
  EXPECT_FALSE(watch.setLogMode("other", 2));
}

TEST(StopWatchTest, a_refused_log_mode_leaves_the_old_one) {
  StopWatch watch(1, "", false);
  watch.addEvent("draw", "one screen", delta_event, log_to_standard_output);
  EXPECT_FALSE(watch.setLogMode("draw", log_to_file));
  CapturedStream output(std::cout);
  watch.reportAll();
  EXPECT_NE(output.take().find("draw           one screen"), std::string::npos);
}

TEST(StopWatchTest, construction_empties_the_log_file) {
  const TemporaryFolder folder;
  write_file(folder.path("times.log"), "old\n");
  const StopWatch watch(1, folder.path("times.log"), false);
  EXPECT_EQ(read_file(folder.path("times.log")), "");
}

TEST(StopWatchTest, an_empty_log_file_name_is_refused_and_the_log_file_kept) {
  const TemporaryFolder folder;
  const CapturedStream output(std::cout);
  CapturedStream errors(std::cerr);
  StopWatch watch(1, folder.path("times.log"), false);
  watch.addEvent("draw", "", delta_event, log_to_file);
  EXPECT_FALSE(watch.setLogFile(""));
  EXPECT_EQ(errors.take(), "Error: Log file name supplied is empty.");
  watch.reportAll();
  EXPECT_NE(read_file(folder.path("times.log")).find("\ndraw "), std::string::npos);
}

TEST(StopWatchTest, a_log_file_that_cannot_be_opened_is_no_error) {
  const TemporaryFolder folder;
  const std::string nowhere = folder.path("no such folder/times.log");
  CapturedStream output(std::cout);
  CapturedStream errors(std::cerr);
  StopWatch watch(2, nowhere, true);
  EXPECT_NE(watch.addEvent("draw", "one screen", delta_event, log_to_file), nullptr);
  EXPECT_TRUE(watch.setLogFile(nowhere));
  watch.reportAll();
  EXPECT_EQ(output.take(), "\n\n");
  EXPECT_EQ(errors.take(), "");

  EXPECT_TRUE(watch.setLogFile(folder.path("times.log")));
  watch.reportAll();
  EXPECT_NE(read_file(folder.path("times.log")).find("\ndraw           one screen"), std::string::npos);
}

} // namespace
} // namespace stopwatch
