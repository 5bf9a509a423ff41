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

#include <algorithm>
#include <cstdio>
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

  /// Starts, and forgets the transfers of the start.
  void startOnFreePort() {
    ASSERT_TRUE(start({QStringLiteral("map"), QString(), QStringLiteral("0")}));
    ASSERT_TRUE(device.waitFor(12));
    device.take();
  }

  void connectAll(const std::vector<QTcpSocket *> &clients) {
    const std::size_t before = daemon->server().clients().size();
    for (QTcpSocket *client : clients) {
      client->connectToHost(QHostAddress(QHostAddress::LocalHost), daemon->server().port());
      ASSERT_TRUE(client->waitForConnected(10'000));
    }
    ASSERT_TRUE(
        test::process_events_until([&] { return daemon->server().clients().size() == before + clients.size(); }));
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

TEST_F(DaemonTest, a_long_null_message_keeps_waiting_those_only_who_sent_one) {
  test::CapturedLog log;
  test::CapturedOutput output;
  startOnFreePort();
  QTcpSocket first;
  QTcpSocket second;
  QTcpSocket other;
  connectAll({&first, &second, &other});
  const qint32 first_id = daemon->server().clients().front()->clientId();

  // Both send a dump of their own size, then a ping, an upload that is refused, and a light.
  const QByteArray after_it = QByteArray::fromHex("00000004 0000000c"
                                                  "0000000c 00000006 00000030 00000009"
                                                  "0000000c 00000015 00000003 00000001");
  const QObject context;
  int waiting = 0;
  const NullMessageLog &dumps = daemon->dispatcher().nullMessageLog();
  QObject::connect(&dumps, &NullMessageLog::clientWaits, &context, [&] { ++waiting; });
  QObject::connect(&dumps, &NullMessageLog::clientGoesOn, &context, [&](qint32 client_id) {
    --waiting;
    const QTcpSocket &client = client_id == first_id ? first : second;
    EXPECT_EQ(client.bytesAvailable(), 0) << "a ping is answered after the dump before it";
  });
  first.write(QByteArray::fromHex("00200000") + QByteArray(0x200000, '\0') + after_it);
  ASSERT_TRUE(test::process_events_until([&] { return waiting == 1; }));
  second.write(QByteArray::fromHex("00014000 00000000") + QByteArray(0x13FFC, '\1') + after_it);
  ASSERT_TRUE(test::process_events_until([&] { return waiting == 2; }));
  other.write(QByteArray::fromHex("00000004 0000000c"));
  ASSERT_TRUE(test::process_events_until([&] { return other.bytesAvailable() == 8; }));
  EXPECT_EQ(waiting, 2) << "all of it was written before anybody had an answer";

  std::vector<std::string> transfers;
  ASSERT_TRUE(test::process_events_until([&] {
    for (std::string &line : device.takeLines())
      transfers.push_back(std::move(line));
    return transfers.size() == 2 && first.bytesAvailable() == 8 && second.bytesAvailable() == 8;
  }));
  const std::string written = output.take();
  const std::size_t end_of_first = written.find("data[2097151] = 0x0\n");
  const std::size_t end_of_second = written.find("data[81919] = 0x1\n");
  const std::size_t refused = written.find("invalid image data");
  ASSERT_NE(std::max(end_of_first, end_of_second), std::string::npos);
  EXPECT_LT(end_of_first, refused);
  EXPECT_LT(end_of_second, written.rfind("invalid image data"));
}

TEST_F(DaemonTest, what_a_client_sent_after_a_null_message_is_carried_out_when_it_has_left) {
  test::CapturedLog log;
  test::CapturedOutput output;
  startOnFreePort();
  QTcpSocket client;
  connectAll({&client});
  client.write(QByteArray::fromHex("00100000") + QByteArray(0x100000, '\0') +
               QByteArray::fromHex("0000000c 00000015 00000003 00000001"));
  ASSERT_TRUE(client.waitForBytesWritten(10'000));
  bool waits = false;
  QObject::connect(&daemon->dispatcher().nullMessageLog(), &NullMessageLog::clientWaits, [&] { waits = true; });
  ASSERT_TRUE(test::process_events_until([&] { return waits && client.bytesToWrite() == 0; }));
  client.disconnectFromHost();
  ASSERT_TRUE(test::process_events_until([&] { return daemon->server().clients().empty(); }));
  ASSERT_TRUE(device.waitFor(1));
  EXPECT_EQ(device.takeLines(), std::vector<std::string>{"w 0900 1 a300"});
  EXPECT_THAT(output.take(), testing::EndsWith("data[1048575] = 0x0\n"));
}

TEST_F(DaemonTest, a_null_message_that_waits_at_the_end_is_written_then) {
  test::CapturedLog log;
  test::CapturedOutput output;
  startOnFreePort();
  QTcpSocket client;
  connectAll({&client});
  bool waits = false;
  QObject::connect(&daemon->dispatcher().nullMessageLog(), &NullMessageLog::clientWaits, [&] { waits = true; });
  client.write(QByteArray::fromHex("00100000") + QByteArray(0x100000, '\0'));
  ASSERT_TRUE(test::process_events_until([&] { return waits; }));
  daemon.reset();
  EXPECT_THAT(output.take(), testing::EndsWith("data[1048575] = 0x0\n"));
}

TEST_F(DaemonTest, a_null_message_beyond_the_full_mark_makes_further_ones_wait_and_nothing_else) {
  test::CapturedLog log;
  test::CapturedOutput output;
  startOnFreePort();
  QTcpSocket flooding;
  QTcpSocket other;
  connectAll({&flooding, &other});
  bool is_full = false;
  QObject::connect(&daemon->dispatcher().nullMessageLog(), &NullMessageLog::backlogFull, [&] { is_full = true; });
  QObject::connect(&daemon->dispatcher().nullMessageLog(), &NullMessageLog::backlogLow, [&] {
    is_full = false;
    EXPECT_EQ(other.bytesAvailable(), 8);
  });
  flooding.write(QByteArray::fromHex("00500000") + QByteArray(0x500000, '\0'));
  ASSERT_TRUE(test::process_events_until([&] { return is_full; }));
  // A ping, a light, a null message, and a ping that has to wait for it.
  other.write(
      QByteArray::fromHex("00000004 0000000c 0000000c 00000015 00000003 00000001 00000001 00 00000004 0000000c"));
  std::vector<std::string> transfers;
  ASSERT_TRUE(test::process_events_until([&] { return !(transfers = device.takeLines()).empty(); }));
  EXPECT_EQ(transfers, std::vector<std::string>{"w 0900 1 a300"});
  EXPECT_TRUE(is_full);
  ASSERT_TRUE(test::process_events_until([&] { return other.bytesAvailable() == 16; }));
  EXPECT_FALSE(is_full);
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

TEST_F(DaemonTest, starts_with_24_buttons_each_of_which_drives_its_own_led) {
  test::CapturedLog log;
  test::CapturedOutput output;
  startOnFreePort();
  QTcpSocket client;
  connectAll({&client});
  output.take();
  std::vector<std::string> expected;
  for (int id = 0; id < 24; ++id) {
    client.write(QByteArray::fromHex("00000010 00000011 000000" + QByteArray::number(id, 16).rightJustified(2, '0') +
                                     "00000001 00000000"));
    char line[32];
    std::snprintf(line, sizeof line, "w 0900 1 %02x00", 0x60U + static_cast<unsigned>(id));
    expected.emplace_back(line);
  }
  for (const char *id : {"00000018", "fffffffe"})
    client.write(QByteArray::fromHex("00000010 00000011" + QByteArray(id) + "00000001 00000000 00000004 0000000c"));
  ASSERT_TRUE(test::process_events_until([&] { return client.bytesAvailable() == 16; }));
  ASSERT_TRUE(device.waitFor(24));
  EXPECT_EQ(device.takeLines(), expected);
  EXPECT_EQ(output.take(), "buttondriver:invalid button id 24, setLEDState()\n"
                           "buttondriver:invalid button id -2, setLEDState()\n");
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
