// SPDX-License-Identifier: Apache-2.0
#include "app/daemon.h"

#include "panel/panel_lib.h"
#include "server/client_buttondriver.h"
#include "support/captured_log.h"
#include "support/device/recording_device.h"
#include "support/event_loop.h"
#include "support/test_root.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace buttondriver {
namespace {

using testing::Contains;

class DaemonTest : public testing::Test {
protected:
  ~DaemonTest() override {
    daemon.reset();
    panel::panel_lib_done();
  }

  bool start(const QStringList &arguments) {
    daemon.emplace(root.paths());
    return daemon->start(QStringList(QStringLiteral("buttondriver")) + arguments);
  }

  test::TestRoot root;
  test::RecordingDevice device;
  std::optional<Daemon> daemon;
};

TEST_F(DaemonTest, without_a_map_file_the_hardware_is_opened_and_given_up_again) {
  test::CapturedLog log;
  EXPECT_FALSE(start({}));
  daemon.reset();
  EXPECT_THAT(log.take(), Contains("critical: buttondriver:map file must be specified as first argument!!! "));
  EXPECT_EQ(device.opened_paths.size(), 1U);
}

TEST_F(DaemonTest, a_port_that_is_no_number_is_any_free_port) {
  for (const char *port : {"abc", "65536", "-1", "12x", "0x50", ""}) {
    test::CapturedOutput output;
    ASSERT_TRUE(start({QStringLiteral("map"), QString(), QString::fromLatin1(port)})) << port;
    EXPECT_NE(daemon->server().port(), 0) << port;
    EXPECT_EQ(output.take(), "buttondriver:reconfig \n") << port;
    daemon.reset();
    panel::panel_lib_done(); // a daemon leaves that to the end of its process
  }
}

TEST_F(DaemonTest, arguments_after_the_port_are_ignored) {
  EXPECT_TRUE(start({QStringLiteral("map"), QString(), QStringLiteral("0"), QStringLiteral("more")}));
  EXPECT_NE(daemon->server().port(), 0);
}

TEST_F(DaemonTest, that_cannot_listen_says_so_on_standard_output_and_runs_on) {
  QTcpServer taken;
  ASSERT_TRUE(taken.listen(QHostAddress::Any));
  test::CapturedOutput output;
  EXPECT_TRUE(start({QStringLiteral("map"), QString(), QString::number(taken.serverPort())}));
  EXPECT_EQ(daemon->server().port(), 0);
  EXPECT_EQ(output.take(), "buttondriver:reconfig \nbuttondriver:failed to start server\n");
}

TEST_F(DaemonTest, start_sends_no_intensity_whatever_the_level_file_says) {
  root.writeLevels("scr 30\n");
  ASSERT_TRUE(start({QStringLiteral("map"), QString(), QStringLiteral("0")}));
  ASSERT_TRUE(test::process_events_until([&] { return daemon->fpga().queueLength() == 0; }));
  EXPECT_EQ(device.take().size(), 12U);
}

TEST_F(DaemonTest, a_null_message_without_end_keeps_nobody_waiting_for_an_answer) {
  test::CapturedLog log;
  test::CapturedOutput output;
  ASSERT_TRUE(start({QStringLiteral("map"), QString(), QStringLiteral("0")}));
  ASSERT_TRUE(device.waitFor(12));
  QTcpSocket flooding;
  QTcpSocket other;
  for (QTcpSocket *client : {&flooding, &other})
    client->connectToHost(QHostAddress(QHostAddress::LocalHost), daemon->server().port());
  ASSERT_TRUE(test::process_events_until([&] { return daemon->server().clients().size() == 2; }));
  bool is_high = false;
  ASSERT_TRUE(test::process_events_until([&] { return daemon->fpga().queueLength() == 0; }));
  device.takeLines();
  QObject::connect(&daemon->dispatcher().nullMessageLog(), &NullMessageLog::backlogHigh, [&] { is_high = true; });
  QObject::connect(&daemon->dispatcher().nullMessageLog(), &NullMessageLog::backlogLow, [&] {
    is_high = false;
    EXPECT_EQ(daemon->fpga().queueLength(), 0U) << "what its sender sent after it has not waited";
    EXPECT_TRUE(device.takeLines().empty()) << "what its sender sent after it has not waited";
  });

  constexpr int size = 0x100000;
  flooding.write(QByteArray::fromHex("00100000") + QByteArray(size, '\0') +
                 QByteArray::fromHex("0000000c 00000015 00000003 00000001"));
  ASSERT_TRUE(test::process_events_until([&] { return is_high; }));
  other.write(QByteArray::fromHex("00000004 0000000c"));
  ASSERT_TRUE(test::process_events_until([&] { return other.bytesAvailable() == 8; }));
  EXPECT_TRUE(is_high) << "all of it was written before anybody had an answer";
  ASSERT_TRUE(test::process_events_until([&] { return !is_high; }));
  // What was sent after it is carried out.
  std::vector<std::string> transfers;
  ASSERT_TRUE(test::process_events_until([&] {
    for (std::string &line : device.takeLines())
      transfers.push_back(std::move(line));
    return !transfers.empty();
  }));
  EXPECT_EQ(transfers.back(), "w 0900 1 a300");
  EXPECT_THAT(output.take(), testing::EndsWith("data[1048574] = 0x0\ndata[1048575] = 0x0\n"));
}

TEST_F(DaemonTest, a_null_message_beyond_the_full_mark_makes_everybody_wait) {
  test::CapturedLog log;
  test::CapturedOutput output;
  ASSERT_TRUE(start({QStringLiteral("map"), QString(), QStringLiteral("0")}));
  QTcpSocket flooding;
  QTcpSocket other;
  for (QTcpSocket *client : {&flooding, &other})
    client->connectToHost(QHostAddress(QHostAddress::LocalHost), daemon->server().port());
  ASSERT_TRUE(test::process_events_until([&] { return daemon->server().clients().size() == 2; }));
  bool is_full = false;
  QObject::connect(&daemon->dispatcher().nullMessageLog(), &NullMessageLog::backlogFull, [&] { is_full = true; });
  flooding.write(QByteArray::fromHex("00500000") + QByteArray(0x500000, '\0'));
  ASSERT_TRUE(test::process_events_until([&] { return is_full; }));
  ASSERT_TRUE(test::process_events_until([&] { return daemon->fpga().queueLength() == 0; }));
  device.takeLines();
  ASSERT_TRUE(is_full);
  // A ping, and a light.
  other.write(QByteArray::fromHex("00000004 0000000c 0000000c 00000015 00000003 00000001"));
  ASSERT_TRUE(test::process_events_until([&] { return other.bytesAvailable() == 8; }));
  EXPECT_EQ(daemon->fpga().queueLength(), 0U);
  EXPECT_TRUE(device.takeLines().empty());
  output.take();
}

TEST_F(DaemonTest, the_images_of_a_client_go_with_its_connection) {
  test::CapturedLog log;
  test::CapturedOutput output;
  ASSERT_TRUE(start({QStringLiteral("map"), QString(), QStringLiteral("0")}));
  QTcpSocket client;
  client.connectToHost(QHostAddress(QHostAddress::LocalHost), daemon->server().port());
  ASSERT_TRUE(test::process_events_until([&] { return daemon->server().clients().size() == 1; }));
  constexpr qint32 image_id = 100;
  const qint32 kept_as = image_id + daemon->server().clients().front()->clientId();
  client.write(QByteArray::fromHex("00000084 00000006 00000064 00000078") + QByteArray(120, '\x55'));
  ASSERT_TRUE(test::process_events_until([&] { return daemon->dispatcher().image(kept_as) != nullptr; }));
  client.abort();
  EXPECT_TRUE(test::process_events_until([&] { return daemon->dispatcher().image(kept_as) == nullptr; }));
}

TEST_F(DaemonTest, each_button_drives_its_own_led) {
  ASSERT_TRUE(start({QStringLiteral("map"), QString(), QStringLiteral("0")}));
  ASSERT_TRUE(device.waitFor(12));
  device.take();
  daemon->dispatcher().setLEDState(23, 1, 0);
  ASSERT_TRUE(device.waitFor(1));
  EXPECT_THAT(device.takeLines(), Contains("w 0900 1 7700"));
}

TEST_F(DaemonTest, the_server_delivers_to_what_the_dispatcher_was_wrapped_in) {
  class Ear : public ButtonSetter {
  public:
    void process_messages(const std::vector<QByteArray> &messages, QIODevice *, qint32) override {
      heard += messages.size();
    }
    std::size_t heard = 0;
  } ear;
  ButtonSetter *wrapped = nullptr;
  daemon.emplace(root.paths());
  ASSERT_TRUE(daemon->start({QStringLiteral("buttondriver"), QStringLiteral("map"), QString(), QStringLiteral("0")},
                            [&](ButtonSetter *dispatcher) {
                              wrapped = dispatcher;
                              return &ear;
                            }));
  EXPECT_EQ(wrapped, &daemon->dispatcher());
  QTcpSocket client;
  client.connectToHost(QHostAddress(QHostAddress::LocalHost), daemon->server().port());
  client.write(QByteArray::fromHex("00000004 0000000c"));
  EXPECT_TRUE(test::process_events_until([&] { return ear.heard == 1; }));
}

} // namespace
} // namespace buttondriver
