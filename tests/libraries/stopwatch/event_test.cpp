// SPDX-License-Identifier: Apache-2.0
// What both kinds of event have in common: a row for each kind.

#include "stopwatch/stopwatch.h"

#include "libraries/stopwatch/captured_stream.h"
#include "libraries/stopwatch/golden_headers.h"
#include "libraries/stopwatch/report_of.h"
#include "libraries/stopwatch/test_clock.h"
#include "libraries/stopwatch/time_zone.h"

#include <gtest/gtest.h>

#include <ctime>
#include <memory>
#include <sstream>

namespace stopwatch {
namespace {

using test::CapturedStream;
using test::report_of;
using test::TestClock;
using test::TimeZone;

template <class Kind>
std::unique_ptr<Event> make(const char *name, const char *description, bool verbose, Clock clock) {
  return std::make_unique<Kind>(name, description, verbose, std::move(clock));
}

struct KindRow {
  const char *name;
  std::int32_t type;
  std::unique_ptr<Event> (*make)(const char *name, const char *description, bool verbose, Clock clock);
  const std::string *header;
  /// Reports of an event "draw", "one screen" that has measured nothing, and of one with longer texts.
  const char *empty_row;
  const char *long_row;
  /// What a verbose start and stop print, the readings being 1000 s 5 us and 1001 s 999999 us.
  const char *start_text;
  const char *stop_text;
  /// What they print on standard error when the clock fails.
  const char *start_failure;
  const char *stop_failure;
  /// The line before a reading.
  const char *stop_announcement;
  /// What a report leaves on a stream in scientific notation with a precision of 9.
  std::ios_base::fmtflags notation_left;
  std::streamsize precision_left;
};

std::ostream &operator<<(std::ostream &stream, const KindRow &row) { return stream << row.name; }

const KindRow kinds[] = {
    {"Delta", 0, make<Delta>, &test::delta_header,
     "draw           one screen                         0                    0.000       0.000",
     "sixteen letters!a description of thirty-six letters!0                    0.000       0.000",
     "Getting the starting reference time...\n_startTime = 1000 seconds, 5 usecs.\n",
     "Getting the current time...\nnow = 1001 seconds, 999999 usecs.\n", "Delta::start(): gettimeofday() failed\n",
     "Delta::stop():  gettimeofday() failed\n", "Getting the current time...\n", std::ios_base::fixed, 3},
    {"TimeStamp", 1, make<TimeStamp>, &test::time_stamp_header,
     "draw           one screen                         00:00:00.000 00:00:00.000 ",
     "sixteen letters!a description of thirty-six letters!00:00:00.000 00:00:00.000 ",
     "Getting the starting time...\n_startTime = 1000 seconds, 5 usecs.\n",
     "Getting the end time...\n_endTime = 1001 seconds, 999999 usecs.\n", "TimeStamp::start(): gettimeofday() failed\n",
     "TimeStamp::stop():  gettimeofday() failed\n", "Getting the end time...\n", std::ios_base::scientific, 9},
};

class EventTest : public testing::TestWithParam<KindRow> {
protected:
  std::unique_ptr<Event> makeEvent(bool verbose = false) {
    return GetParam().make("draw", "one screen", verbose, _clock.clock());
  }

  const TimeZone _zone{"UTC0"};
  TestClock _clock{1000, 5};
  CapturedStream _output{std::cout};
  CapturedStream _errors{std::cerr};
};

TEST_P(EventTest, begins_with_its_texts_and_with_nothing_measured) {
  for (const bool verbose : {false, true}) {
    const auto event = makeEvent(verbose);
    EXPECT_EQ(event->name(), "draw");
    EXPECT_EQ(event->description(), "one screen");
    EXPECT_EQ(event->type(), GetParam().type);
    EXPECT_EQ(event->verbose(), verbose);
    EXPECT_FALSE(event->headerPending());
    EXPECT_FALSE(event->autoReport());
    EXPECT_FALSE(event->running());
    EXPECT_EQ(report_of(*event), GetParam().empty_row);
  }
}

TEST_P(EventTest, second_start_reads_no_clock) {
  const auto event = makeEvent(true);
  event->start();
  EXPECT_EQ(_output.take(), GetParam().start_text);
  event->start();
  EXPECT_EQ(_output.take(), "");
  EXPECT_EQ(_clock.readings(), 1);
  EXPECT_TRUE(event->running());
}

TEST_P(EventTest, stop_without_start_changes_nothing) {
  const auto event = makeEvent(true);
  event->setAutoReport(true);
  event->stop();
  EXPECT_EQ(_clock.readings(), 0);
  EXPECT_FALSE(event->running());
  EXPECT_EQ(_output.take(), "");
  EXPECT_EQ(report_of(*event), GetParam().empty_row);
}

TEST_P(EventTest, prints_nothing_unless_verbose) {
  const auto event = makeEvent();
  event->start();
  event->stop();
  EXPECT_EQ(_output.take(), "");
  EXPECT_EQ(_errors.take(), "");
}

TEST_P(EventTest, prints_its_readings_when_verbose) {
  const auto event = makeEvent();
  event->setVerbose(true);
  event->start();
  EXPECT_EQ(_output.take(), GetParam().start_text);
  _clock.set(1001, 999999);
  event->stop();
  EXPECT_EQ(_output.take(), GetParam().stop_text);
}

TEST_P(EventTest, keeps_the_old_start_time_and_runs_when_the_clock_fails_at_start) {
  const auto event = makeEvent(true);
  event->start();
  event->stop();
  _output.take();
  _clock.set(2000, 0);
  _clock.fail(true);
  event->start();
  EXPECT_TRUE(event->running());
  EXPECT_EQ(_errors.take(), GetParam().start_failure);
  EXPECT_EQ(_output.take(), GetParam().start_text);
}

TEST_P(EventTest, goes_on_running_when_the_clock_fails_at_stop) {
  const auto event = makeEvent(true);
  event->setAutoReport(true);
  event->start();
  _output.take();
  _clock.fail(true);
  event->stop();
  EXPECT_TRUE(event->running());
  EXPECT_EQ(_errors.take(), GetParam().stop_failure);
  EXPECT_EQ(_output.take(), GetParam().stop_announcement);

  _clock.fail(false);
  event->setAutoReport(false);
  _clock.set(1001, 999999);
  event->stop();
  EXPECT_FALSE(event->running());
  EXPECT_EQ(_errors.take(), "");
  EXPECT_EQ(_output.take(), GetParam().stop_text);
}

TEST_P(EventTest, prints_its_header_and_leaves_no_alignment) {
  std::ostringstream stream;
  stream.precision(9);
  makeEvent()->printHeader(stream);
  EXPECT_EQ(stream.str(), *GetParam().header);
  EXPECT_EQ(stream.flags() & std::ios_base::adjustfield, std::ios_base::fmtflags{});
  EXPECT_EQ(stream.flags() & std::ios_base::floatfield, std::ios_base::fmtflags{});
  EXPECT_EQ(stream.precision(), 9);
}

TEST_P(EventTest, report_leaves_no_alignment_and_what_its_kind_has_to_leave) {
  for (const std::ios_base::fmtflags before :
       {std::ios_base::fmtflags{}, std::ios_base::left, std::ios_base::right, std::ios_base::internal}) {
    std::ostringstream stream;
    stream.flags(before | std::ios_base::hex | std::ios_base::scientific);
    stream.precision(9);
    makeEvent()->report(stream);
    EXPECT_EQ(stream.str(), GetParam().empty_row);
    EXPECT_EQ(stream.flags(), std::ios_base::hex | GetParam().notation_left);
    EXPECT_EQ(stream.precision(), GetParam().precision_left);
  }
}

TEST_P(EventTest, every_report_begins_with_the_header_while_that_is_pending) {
  const auto event = makeEvent();
  event->setHeaderPending(true);
  EXPECT_EQ(report_of(*event), *GetParam().header + GetParam().empty_row);
  EXPECT_TRUE(event->headerPending());
  EXPECT_EQ(report_of(*event), *GetParam().header + GetParam().empty_row);
  event->setHeaderPending(false);
  EXPECT_EQ(report_of(*event), GetParam().empty_row);
}

TEST_P(EventTest, long_texts_are_not_cut) {
  const auto event = GetParam().make("sixteen letters!", "a description of thirty-six letters!", false, _clock.clock());
  EXPECT_EQ(report_of(*event), GetParam().long_row);
}

TEST_P(EventTest, reset_forgets_the_measurements_and_the_pending_header) {
  const auto event = makeEvent(true);
  event->start();
  _clock.set(1001, 999999);
  event->stop();
  event->setHeaderPending(true);
  event->setAutoReport(true);
  event->start();
  event->reset();
  EXPECT_FALSE(event->running());
  EXPECT_FALSE(event->headerPending());
  EXPECT_TRUE(event->autoReport());
  EXPECT_TRUE(event->verbose());
  EXPECT_EQ(event->name(), "draw");
  EXPECT_EQ(report_of(*event), GetParam().empty_row);
}

template <class Kind> class KindOfEventTest : public testing::Test {};
using Kinds = testing::Types<Delta, TimeStamp>;
TYPED_TEST_SUITE(KindOfEventTest, Kinds);

TYPED_TEST(KindOfEventTest, has_no_start_time_before_its_start_and_after_a_reset) {
  TestClock clock(1000, 5);
  TypeParam event("draw", "", false, clock.clock());
  EXPECT_EQ(event.startTime().tv_sec, 0);
  EXPECT_EQ(event.startTime().tv_usec, 0);
  event.start();
  EXPECT_EQ(event.startTime().tv_sec, 1000);
  EXPECT_EQ(event.startTime().tv_usec, 5);
  event.reset();
  EXPECT_EQ(event.startTime().tv_sec, 0);
  EXPECT_EQ(event.startTime().tv_usec, 0);
}

TYPED_TEST(KindOfEventTest, takes_the_time_of_the_machine_unless_given_a_clock) {
  TypeParam event("draw", "", false);
  const std::time_t before = std::time(nullptr);
  event.start();
  EXPECT_GE(event.startTime().tv_sec, before);
  EXPECT_LE(event.startTime().tv_sec, before + 60);
}

/// A kind of a program's own, made as the program has it: with a name, a description, a type and whether it is verbose.
class Instant : public Event {
public:
  explicit Instant(bool verbose) : Event("tick", "one tick", 7, verbose) {}

  void start() override { _running = readClock(_time, "Reading...", "no time\n"); }
  void stop() override { _running = false; }
  void reset() override { _time = {}; }
  void printHeader(std::ostream &stream) const override { stream << "Instants\n"; }
  void report(std::ostream &stream) const override { stream << _time.tv_sec; }

private:
  timeval _time{};
};

TEST(EventOfAnotherKindTest, is_made_with_four_arguments_and_reads_the_clock_of_the_machine) {
  for (const bool verbose : {false, true}) {
    Instant event(verbose);
    EXPECT_EQ(event.name(), "tick");
    EXPECT_EQ(event.description(), "one tick");
    EXPECT_EQ(event.type(), 7);
    EXPECT_EQ(event.verbose(), verbose);
    EXPECT_FALSE(event.headerPending());
    EXPECT_FALSE(event.autoReport());
    EXPECT_FALSE(event.running());
    CapturedStream output(std::cout);
    const std::time_t before = std::time(nullptr);
    event.start();
    EXPECT_TRUE(event.running());
    EXPECT_EQ(output.take(), verbose ? "Reading...\n" : "");
    EXPECT_GE(std::stoll(report_of(event)), before);
  }
}

INSTANTIATE_TEST_SUITE_P(Of, EventTest, testing::ValuesIn(kinds),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace
} // namespace stopwatch
