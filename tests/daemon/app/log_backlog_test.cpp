// SPDX-License-Identifier: Apache-2.0
// A daemon whose log has a slow reader.

#include "app/daemon.h"
#include "logging/log_gathering.h"
#include "logging/message_handler.h"
#include "logging/standard_output.h"
#include "panel/panel_lib.h"
#include "support/device/recording_device.h"
#include "support/event_loop.h"
#include "support/log_pipe.h"
#include "support/test_root.h"

#include <QTcpSocket>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <string>
#include <vector>

namespace buttondriver {
namespace {

using namespace std::chrono_literals;

std::chrono::steady_clock::time_point pretended_now;

const QByteArray ping = QByteArray::fromHex("00000004 0000000c");
const QByteArray light = QByteArray::fromHex("0000000c 00000015 00000003 00000001");
const std::vector<std::string> light_is_lit = {"w 0900 1 a300"};

class LogBacklogTest : public testing::Test {
protected:
  LogBacklogTest() {
    pretended_now = std::chrono::steady_clock::time_point() + 100h;
    install_message_handler();
    LogGathering::Settings settings;
    settings.output = output.writingEnd();
    settings.error = error.writingEnd();
    settings.clock = [] { return pretended_now; };
    settings.look_every_ms = 1;
    log.emplace(settings);
    daemon.emplace(root.paths());
    EXPECT_TRUE(daemon->start({QStringLiteral("buttondriver"), QStringLiteral("map"), QString(), QStringLiteral("0")}));
    daemon->follow(*log);
    EXPECT_TRUE(device.waitFor(12));
    device.take();
    QObject::connect(&*log, &LogGathering::full, [this] { is_full = true; });
    QObject::connect(&*log, &LogGathering::low, [this] { is_full = false; });
    for (QTcpSocket *client : {&first, &second})
      client->connectToHost(QHostAddress(QHostAddress::LocalHost), daemon->server().port());
    EXPECT_TRUE(test::process_events_until([&] { return daemon->server().clients().size() == 2; }));
  }

  ~LogBacklogTest() override {
    daemon.reset();
    panel::panel_lib_done();
    std::signal(SIGPIPE, SIG_IGN);
    output.closeReadingEnd();
    error.closeReadingEnd();
    log.reset();
    std::signal(SIGPIPE, SIG_DFL);
    qInstallMessageHandler(nullptr);
  }

  void fillLog() {
    output.fill();
    for (std::size_t i = 0; i <= LogPlace::full_mark / 16 + LogPlace::at_once / 16; ++i)
      print_text("sixteen letters\n");
    ASSERT_TRUE(test::process_events_until([&] { return is_full; }));
  }

  /// Has the pings before a client's first other command answered, and sees that no other command is carried out.
  void seeCommandsWait() {
    first.write(light + ping);
    second.write(ping + ping + light + ping);
    ASSERT_TRUE(test::process_events_until([&] { return second.bytesAvailable() == 16; }));
    second.readAll();
    // Another round trip, so that what came on the first connection has had its turn.
    QTcpSocket third;
    third.connectToHost(QHostAddress(QHostAddress::LocalHost), daemon->server().port());
    third.write(ping);
    ASSERT_TRUE(test::process_events_until([&] { return third.bytesAvailable() == 8; }));
    EXPECT_EQ(first.bytesAvailable(), 0);
    EXPECT_EQ(second.bytesAvailable(), 0);
    EXPECT_TRUE(device.takeLines().empty());
  }

  void seeCommandsCarriedOut() {
    ASSERT_TRUE(
        test::process_events_until([&] { return first.bytesAvailable() == 8 && second.bytesAvailable() == 8; }));
    ASSERT_TRUE(device.waitFor(2));
    EXPECT_EQ(device.takeLines(), (std::vector<std::string>{light_is_lit[0], light_is_lit[0]}));
  }

  test::TestRoot root;
  test::RecordingDevice device;
  test::LogPipe output;
  test::LogPipe error;
  std::optional<LogGathering> log;
  std::optional<Daemon> daemon;
  QTcpSocket first;
  QTcpSocket second;
  bool is_full = false;
};

TEST_F(LogBacklogTest, commands_wait_while_the_log_is_full_and_pings_are_answered) {
  fillLog();
  seeCommandsWait();
  ASSERT_TRUE(test::process_events_until([&] {
    output.takeAll();
    return !is_full;
  }));
  seeCommandsCarriedOut();
}

TEST_F(LogBacklogTest, commands_are_carried_out_again_when_the_reader_has_stood_still_for_thirty_seconds) {
  fillLog();
  pretended_now += 29s;
  seeCommandsWait();
  EXPECT_TRUE(is_full);
  pretended_now += 1s;
  seeCommandsCarriedOut();
  EXPECT_FALSE(is_full);
}

TEST_F(LogBacklogTest, blinking_goes_on_while_the_log_is_full) {
  fillLog();
  daemon->dispatcher().setLEDState(3, -1, 20);
  ASSERT_TRUE(
      test::process_events_until([&] { return device.takeLines() == std::vector<std::string>{"w 0900 1 6300"}; }));
  EXPECT_TRUE(is_full);
}

TEST_F(LogBacklogTest, a_long_null_message_waits_for_the_reader_too_and_loses_no_line) {
  output.fill();
  constexpr int size = 2 * 1024 * 1024; // some 44 MB of log
  first.write(QByteArray::fromHex("00200000") + QByteArray(size, '\0') + light + ping);
  ASSERT_TRUE(test::process_events_until([&] { return is_full; }));
  for (int i = 0; i < 100; ++i) {
    second.write(ping);
    ASSERT_TRUE(test::process_events_until([&] { return second.bytesAvailable() == 8; }));
    second.readAll();
  }
  std::string received;
  ASSERT_TRUE(test::process_events_until([&] {
    received += output.takeAll();
    return first.bytesAvailable() == 8;
  }));
  ASSERT_TRUE(device.waitFor(1));
  EXPECT_EQ(device.takeLines(), light_is_lit);
  ASSERT_TRUE(test::process_events_until([&] {
    received += output.takeAll();
    return received.find("data[2097151] = 0x0\n", received.size() - std::min<std::size_t>(received.size(), 5000)) !=
           std::string::npos;
  }));
  received.erase(0, received.find("data["));
  std::string expected;
  for (int i = 0; i < size; ++i)
    expected += "data[" + std::to_string(i) + "] = 0x0\n";
  EXPECT_TRUE(received == expected);
}

TEST_F(LogBacklogTest, what_the_worker_logs_comes_out_while_the_event_loop_sleeps) {
  bool is_over = false;
  QTimer::singleShot(0, [&] { is_over = true; });
  ASSERT_TRUE(test::process_events_until([&] { return is_over; }));
  output.takeAll();
  daemon->fpga().blackoutScreen(7);
  // No event is processed meanwhile.
  EXPECT_EQ(output.takeUpTo("\n"), "Invalid screen ID 7.\n");
}

} // namespace
} // namespace buttondriver
