// SPDX-License-Identifier: Apache-2.0
#include "logging/log_gathering.h"

#include "logging/log_line.h"
#include "logging/message_handler.h"
#include "logging/standard_output.h"
#include "support/captured_log.h"
#include "support/event_loop.h"
#include "support/log_pipe.h"

#include <QEventLoop>

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <functional>
#include <future>
#include <limits>
#include <optional>
#include <string>
#include <thread>
#include <utility>

namespace buttondriver {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

std::chrono::steady_clock::time_point pretended_now;

class LogGatheringTest : public testing::Test {
protected:
  LogGatheringTest() {
    pretended_now = std::chrono::steady_clock::time_point() + 100h;
    install_message_handler();
  }
  ~LogGatheringTest() override {
    // Nobody waits for a reader who has gone.
    std::signal(SIGPIPE, SIG_IGN);
    output.closeReadingEnd();
    error.closeReadingEnd();
    gathering.reset();
    std::signal(SIGPIPE, SIG_DFL);
    qInstallMessageHandler(nullptr);
  }

  void gather(int output_descriptor, int error_descriptor) {
    LogGathering::Settings settings;
    settings.output = output_descriptor;
    settings.error = error_descriptor;
    settings.clock = [] { return pretended_now; };
    settings.look_every_ms = 1;
    gathering.emplace(settings);
    QObject::connect(&*gathering, &LogGathering::full, [this] { told += "full "; });
    QObject::connect(&*gathering, &LogGathering::low, [this] { told += "low "; });
  }

  /// One round of the event loop, which has nothing to wait for.
  static void goRound() {
    bool is_over = false;
    QTimer::singleShot(0, [&] { is_over = true; });
    test::process_events_until([&] { return is_over; });
  }

  /// Runs the event loop, which nothing else wakes up. Calls `act` when it is about to sleep and the object under test
  /// has done what it does then.
  bool sleepUntil(void (LogGathering::*told_at_last)(), const std::function<void()> &act) {
    test::process_ready_events();
    QEventLoop loop;
    bool has_acted = false;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &loop, [&] {
      if (!std::exchange(has_acted, true))
        act();
    });
    QObject::connect(&*gathering, told_at_last, &loop, &QEventLoop::quit);
    QTimer::singleShot(10s, &loop, [&loop] { loop.exit(1); });
    return loop.exec() == 0;
  }

  void print(std::size_t bytes) const {
    for (std::size_t i = 0; i < bytes / 16; ++i)
      print_text("sixteen letters\n");
  }

  test::LogPipe output;
  test::LogPipe error;
  std::string told;
  std::optional<LogGathering> gathering;
};

TEST_F(LogGatheringTest, a_round_of_the_event_loop_costs_one_write_for_each_channel) {
  gather(output.writingEnd(), error.writingEnd());
  std::string all;
  for (int i = 0; i < 64; ++i) {
    debug_line() << "opcode = " << i;
    all += "opcode =  " + std::to_string(i) + " \n";
    print_line("printed");
  }
  EXPECT_TRUE(output.isEmpty());
  EXPECT_TRUE(error.isEmpty());
  goRound();
  EXPECT_THAT(error.takeWrites(), ElementsAre(all));
  EXPECT_EQ(output.takeWrites().size(), 1U);
}

TEST_F(LogGatheringTest, messages_and_prints_keep_their_order_where_they_go_to_one_place) {
  gather(output.writingEnd(), output.writingEnd());
  debug_line() << "1";
  print_line("2");
  qInfo("3, of Qt");
  debug_line() << QStringLiteral("4, \u00e4");
  print_error("%d\n", 5);
  const std::string long_text(1000, '6');
  critical_line() << long_text.c_str();
  goRound();
  EXPECT_THAT(output.takeWrites(), ElementsAre("1 \n2\n3, of Qt\n\"4, \u00e4\" \n5\n" + long_text + " \n"));
}

TEST_F(LogGatheringTest, lines_of_any_length_are_whole) {
  gather(output.writingEnd(), error.writingEnd());
  for (std::size_t length = 190; length < 260; ++length) {
    const std::string text(length, 'x');
    install_message_handler();
    debug_line() << text.c_str() << std::numeric_limits<qint64>::min() << 7 << text.c_str();
    debug_line() << text.c_str();
    debug_line() << text.c_str() << line_feed;
    goRound();
    EXPECT_EQ(error.takeAll(), text + " -9223372036854775808 7 " + text + " \n" + text + " \n" + text + " \n\n");
    test::CapturedLog log;
    debug_line() << 7 << text.c_str() << line_feed << 7;
    EXPECT_THAT(log.take(), ElementsAre("debug: 7 " + text + " \n7 "));
  }
}

TEST_F(LogGatheringTest, another_handler_gets_every_line) {
  gather(output.writingEnd(), error.writingEnd());
  debug_line() << "ours";
  {
    test::CapturedLog log;
    debug_line() << "theirs";
    critical_line() << 7;
    EXPECT_THAT(log.take(), ElementsAre("debug: theirs ", "critical: 7 "));
  }
  debug_line() << "ours again";
  goRound();
  EXPECT_EQ(error.takeAll(), "ours \nours again \n");
}

TEST_F(LogGatheringTest, a_reader_that_comes_late_gets_everything_and_is_told_about_to_nobody) {
  gather(output.writingEnd(), error.writingEnd());
  output.fill();
  print(500'000);
  goRound();
  output.takeAll();
  std::string received;
  EXPECT_TRUE(test::process_events_until([&] {
    received += output.takeAll();
    return received.size() >= 500'000;
  }));
  EXPECT_EQ(received.size(), 500'000U);
  EXPECT_EQ(told, "");
  // And the event loop is idle after that.
  test::process_ready_events();
}

TEST_F(LogGatheringTest, tells_that_it_is_full_and_that_it_is_low_again) {
  gather(output.writingEnd(), error.writingEnd());
  output.fill();
  print(2 * LogPlace::full_mark);
  EXPECT_EQ(told, "") << "in the middle of whatever logs";
  EXPECT_TRUE(test::process_events_until([this] { return !told.empty(); }));
  EXPECT_EQ(told, "full ");
  EXPECT_TRUE(test::process_events_until([this] {
    output.takeAll();
    return told != "full ";
  }));
  EXPECT_EQ(told, "full low ");
}

TEST_F(LogGatheringTest, another_thread_that_fills_it_wakes_the_event_loop) {
  gather(output.writingEnd(), error.writingEnd());
  output.fill();
  std::promise<void> falls_asleep;
  std::thread filler([&, asleep = falls_asleep.get_future()] {
    asleep.wait();
    print(2 * LogPlace::full_mark);
  });
  EXPECT_TRUE(sleepUntil(&LogGathering::full, [&] { falls_asleep.set_value(); }));
  filler.join();
  EXPECT_EQ(told, "full ");
}

TEST_F(LogGatheringTest, a_reader_that_stands_still_is_given_up_and_learns_of_it_when_it_reads_again) {
  gather(output.writingEnd(), error.writingEnd());
  output.fill();
  print(2 * LogPlace::full_mark);
  EXPECT_TRUE(test::process_events_until([this] { return told == "full "; }));
  EXPECT_TRUE(sleepUntil(&LogGathering::low, [] { pretended_now += 30s; }));
  for (int i = 0; i < 3; ++i)
    print_line("lost");
  std::string received;
  EXPECT_TRUE(test::process_events_until([&] {
    received += output.takeAll();
    return received.find("nobody read: ") != std::string::npos;
  })) << "without a further line";
  EXPECT_EQ(received.substr(received.size() - 46), "\nbuttondriver: texts lost that nobody read: 3\n");
  EXPECT_EQ(told, "full low ");
}

TEST_F(LogGatheringTest, the_end_writes_what_is_there) {
  gather(output.writingEnd(), error.writingEnd());
  debug_line() << "the last line";
  print_text("no line feed");
  gathering.reset();
  EXPECT_EQ(error.takeAll(), "the last line \n");
  EXPECT_EQ(output.takeAll(), "no line feed");
}

TEST_F(LogGatheringTest, the_end_does_not_wait_long_for_a_reader_that_stands_still) {
  gather(output.writingEnd(), error.writingEnd());
  output.fill();
  print_line("in vain");
  const auto start = std::chrono::steady_clock::now();
  gathering.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

struct OtherEnd {
  const char *name;
  void (*end)();
};

class LogGatheringEndTest : public testing::TestWithParam<OtherEnd> {};

TEST_P(LogGatheringEndTest, writes_what_is_there) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto log_and_end = [] {
    install_message_handler();
    const LogGathering gathering;
    debug_line() << "the last line";
    GetParam().end();
  };
  if (GetParam().name == std::string("exit"))
    EXPECT_EXIT(log_and_end(), testing::ExitedWithCode(3), "the last line \n");
  else
    EXPECT_DEATH(log_and_end(), "the last line \n");
}

const OtherEnd other_ends[] = {
    {"exit", [] { std::exit(3); }},
    {"qFatal", [] { qFatal("enough"); }},
    {"terminate", [] { std::terminate(); }},
};

INSTANTIATE_TEST_SUITE_P(Each, LogGatheringEndTest, testing::ValuesIn(other_ends),
                         [](const auto &end) { return std::string(end.param.name); });

} // namespace
} // namespace buttondriver
