#include "app/daemon.h"

#include "panel/panel_lib.h"
#include "support/captured_log.h"
#include "support/event_loop.h"
#include "support/recording_device.h"
#include "support/test_root.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>

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

TEST_F(DaemonTest, arguments_behind_the_port_are_ignored) {
  EXPECT_TRUE(start({QStringLiteral("map"), QString(), QStringLiteral("0"), QStringLiteral("more")}));
  EXPECT_NE(daemon->server().port(), 0);
}

TEST_F(DaemonTest, a_server_that_cannot_listen_is_said_and_the_daemon_runs_on) {
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
  ASSERT_TRUE(device.waitFor(12));
  daemon.reset();
  EXPECT_EQ(device.take().size(), 12U);
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
