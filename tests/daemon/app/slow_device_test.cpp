// SPDX-License-Identifier: Apache-2.0
// A device that takes two milliseconds for a transfer, and one that fails, slow down their own work only.

#include "app/daemon.h"

#include "panel/panel_lib.h"
#include "panel/registers/register_access.h"
#include "protocol/encoders.h"
#include "protocol/frames.h"
#include "support/captured_log.h"
#include "support/device/recording_device.h"
#include "support/event_loop.h"
#include "support/test_root.h"

#include <QTcpSocket>

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace buttondriver {
namespace {

using test::process_events_until;

class SlowDeviceTest : public testing::Test {
protected:
  SlowDeviceTest() {
    device.before_transfer = [this](panel::TransferRecord &) {
      if (is_slow)
        ::usleep(2000);
    };
    daemon.emplace(root.paths());
    daemon->start({QStringLiteral("buttondriver"), QStringLiteral("map"), QString(), QStringLiteral("0")});
  }
  ~SlowDeviceTest() override {
    daemon.reset();
    panel::panel_lib_done();
  }

  std::unique_ptr<QTcpSocket> connectClient() {
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QHostAddress(QHostAddress::LocalHost), daemon->server().port());
    EXPECT_TRUE(process_events_until([&] { return socket->state() == QAbstractSocket::ConnectedState; }));
    return socket;
  }

  test::CapturedLog log;
  test::CapturedOutput output;
  test::TestRoot root;
  test::RecordingDevice device;
  std::atomic<bool> is_slow{true};
  std::optional<Daemon> daemon;
};

TEST_F(SlowDeviceTest, a_flood_waits_with_its_sender_while_others_are_answered_and_nothing_is_lost) {
  constexpr int flood_size = 2000;
  const auto flooding = connectClient();
  const auto pinging = connectClient();
  for (int i = 0; i < flood_size; ++i)
    flooding->write(framed(hton_BMS_SetLEDStatusIndicator(i % 32, i / 32 % 2)));
  int times_high = 0;
  QObject::connect(&daemon->fpga(), &FPGA::backlogHigh, [&] { ++times_high; });
  int answers = 0;
  // The blackout of the start and the flood, one transfer a message.
  constexpr std::size_t all = 12 + flood_size;
  std::chrono::nanoseconds most_queued{};
  std::vector<std::string> lines;
  pinging->write(framed(hton_BMS_Ping()));
  ASSERT_TRUE(process_events_until(
      [&] {
        most_queued = std::max(most_queued, daemon->fpga().queuedTime());
        if (pinging->bytesAvailable() >= 8) {
          pinging->readAll();
          ++answers;
          pinging->write(framed(hton_BMS_Ping()));
        }
        // It has been slow for long enough.
        if (times_high >= 2 && answers > 100)
          is_slow = false;
        for (std::string &line : device.takeLines())
          lines.push_back(std::move(line));
        return lines.size() == all;
      },
      std::chrono::seconds(60)));
  EXPECT_GE(times_high, 2);
  // The mark, and one turn: its last task may be a slow one, or one of unknown time.
  EXPECT_LE(most_queued, QueueMarks().high_time + std::chrono::milliseconds(10 + 12 * 10));
  EXPECT_GT(answers, 100);
  for (int i = 0; i < flood_size; ++i) {
    char expected[32];
    std::snprintf(expected, sizeof expected, "w 0900 1 %02x00",
                  0x80U + static_cast<unsigned>(i % 32) + (i / 32 % 2 == 1 ? 0x20U : 0U));
    ASSERT_EQ(lines[static_cast<std::size_t>(12 + i)], expected) << i;
  }
}

TEST_F(SlowDeviceTest, blinking_faster_than_the_device_can_follow_keeps_nobody_out) {
  const auto client = connectClient();
  ASSERT_TRUE(device.waitFor(12));
  device.takeLines();
  // All 24 buttons want a transfer each 40 ms, which take 48.
  client->write(framed(hton_BMS_SetLEDState(-1, -1, 40)));
  std::vector<std::string> lines;
  ASSERT_TRUE(process_events_until([&] {
    for (std::string &line : device.takeLines())
      lines.push_back(std::move(line));
    return lines.size() > 300;
  }));
  // Late as they are, on and off take turns.
  std::map<unsigned, bool> is_lit;
  for (const std::string &line : lines) {
    const unsigned command = static_cast<unsigned>(std::stoul(line.substr(9, 2), nullptr, 16));
    const bool lights = (command & 0x20U) != 0;
    const auto [led, is_first] = is_lit.try_emplace(command & 0x1FU, lights);
    EXPECT_TRUE(is_first || led->second != lights) << line;
    led->second = lights;
  }
  EXPECT_EQ(is_lit.size(), 24U);
  EXPECT_TRUE(daemon->dispatcher().isBlinking());
  EXPECT_LE(daemon->fpga().queueLength(), 24U * 50) << "a quarter of a second is far less";
  // Others get through, also with more than the queue takes at once.
  QObject::connect(&daemon->fpga(), &FPGA::backlogHigh, [&] { is_slow = false; });
  for (int i = 0; i < 600; ++i)
    client->write(framed(hton_BMS_SetLEDStatusIndicator(i % 32, 1)));
  client->write(framed(hton_BMS_SetLEDState(-1, 0, 0)));
  ASSERT_TRUE(process_events_until([&] { return !daemon->dispatcher().isBlinking(); }, std::chrono::seconds(30)));
  EXPECT_TRUE(process_events_until([&] { return daemon->fpga().queueLength() == 0; }, std::chrono::seconds(30)));
}

/// Whether thread `id` of this process waits for something.
bool is_waiting(pid_t id) {
  std::ifstream file("/proc/self/task/" + std::to_string(id) + "/stat");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  return text.find(") S ") != std::string::npos;
}

TEST_F(SlowDeviceTest, a_change_of_the_font_waits_for_one_task_at_most) {
  root.writeFontSize(8, 16);
  ASSERT_TRUE(device.waitFor(12));
  enum { stopped, until_the_change_waits, going };
  std::atomic<int> manner{stopped};
  std::atomic<bool> is_at_work{false};
  const pid_t changing_thread = ::gettid();
  // Each task goes on when the change waits for the device. Who woke it up then would soon have the device again.
  device.before_transfer = [&](panel::TransferRecord &) {
    is_at_work = true;
    while (manner == stopped || (manner == until_the_change_waits && !is_waiting(changing_thread)))
      std::this_thread::yield();
  };
  for (int i = 0; i < 500; ++i)
    daemon->fpga().setLEDStatusIndicator(i % 32, 1);
  ASSERT_TRUE(process_events_until([&] { return is_at_work.load(); }));
  device.takeLines();
  manner = until_the_change_waits;
  daemon->fpga().check_font_settings(QString::fromStdString(root.paths().launcher_configuration));
  EXPECT_EQ(device.takeLines().size(), 1U);
  EXPECT_GT(daemon->fpga().queueLength(), 400U);
  manner = going;
  daemon.reset(); // while the worker still finds what it looks at
}

TEST_F(SlowDeviceTest, a_device_that_fails_from_now_on_is_counted_and_nothing_else) {
  ASSERT_TRUE(device.waitFor(12));
  const std::uint32_t failures = panel::spi_failure_count;
  device.result = -1;
  const auto client = connectClient();
  for (int i = 0; i < 5; ++i)
    client->write(framed(hton_BMS_SetLEDStatusIndicator(i, 1)));
  client->write(framed(hton_BMS_Ping()));
  ASSERT_TRUE(process_events_until([&] { return client->bytesAvailable() == 8; }));
  ASSERT_TRUE(device.waitFor(17));
  daemon.reset();
  EXPECT_EQ(panel::spi_failure_count - failures, 5U);
}

} // namespace
} // namespace buttondriver
