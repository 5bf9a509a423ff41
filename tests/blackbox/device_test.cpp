// SPDX-License-Identifier: Apache-2.0
// The daemon as it is installed, with the virtual panel of another program in place of its device.

#include "support/event_loop.h"
#include "support/program.h"
#include "support/test_root.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

namespace buttondriver {
namespace {

using test::Program;
using testing::HasSubstr;

const QString daemon_program = QStringLiteral(BUTTONDRIVER_PROGRAM);
const QString simulator_program = QStringLiteral(BUTTONDRIVER_SIM_PROGRAM);

/// A text line on screen 1, button LED 5, status LED 31 and toggle indicator 1.
constexpr const char *messages = "00000017 0000000f 00000001 00000000 00000001 00000003 486900"
                                 "00000010 00000011 00000005 00000001 00000000"
                                 "0000000c 00000015 0000001f 00000001"
                                 "0000000c 00000016 00000001 00000001";

// How many transfers the daemon makes of the first text after its start, and of those messages.
constexpr int at_start = 12; // the screens are made black, and nothing else
constexpr int of_text = 15;
constexpr int of_messages = of_text + 3;

/// What is in a recording, without the times.
QByteArray transfers(const QString &record) {
  QByteArray lines;
  for (const QByteArray &line : test::read_file(record).split('\n'))
    if (!line.isEmpty())
      lines += line.mid(line.indexOf(' ') + 1) + '\n';
  return lines;
}

class DeviceTest : public testing::Test {
protected:
  DeviceTest() { root.writeFontSize(8, 16); }

  QString file(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }

  /// A simulator that shows what another program drives.
  std::unique_ptr<Program> panel(const QStringList &options = {QStringLiteral("--http=off")}) {
    auto simulator = std::make_unique<Program>(simulator_program, QStringList{QStringLiteral("--device"), device,
                                                                              QStringLiteral("--record"), record,
                                                                              QStringLiteral("--snapshot"), picture} +
                                                                      options);
    EXPECT_TRUE(simulator->waitForOutput("buttondriver-sim: device at " + QFile::encodeName(device) + "\n"));
    return simulator;
  }

  std::unique_ptr<Program> daemon() {
    return std::make_unique<Program>(
        daemon_program, QStringList{QStringLiteral("map"), QStringLiteral("127.0.0.1"), QStringLiteral("0")},
        root.path(), device);
  }

  /// Sends `hex` and waits until the daemon has read it.
  static void send(Program &daemon, const QByteArray &hex) {
    const auto client = daemon.connectTo();
    test::send_frames(*client, hex);
    EXPECT_TRUE(test::answered_ping(*client));
  }

  /// Waits until the recording has so many lines.
  bool recorded(qsizetype lines) const {
    return test::process_events_until([&] { return test::read_file(record).count('\n') >= lines; },
                                      std::chrono::seconds(20));
  }

  static void takePicture(Program &simulator) {
    simulator.sendSignal(SIGUSR1);
    EXPECT_TRUE(simulator.waitForOutput("buttondriver-sim: wrote "));
  }

  const test::TestRoot root;
  const QTemporaryDir folder;
  const QString device = file("device");
  const QString record = file("record");
  const QString picture = file("panel.png");
};

TEST_F(DeviceTest, a_daemon_beside_the_panel_does_to_it_what_the_panels_own_daemon_does) {
  const QString expected_record = file("expected-record");
  const QString expected_picture = file("expected.png");
  {
    Program simulator(simulator_program, {QStringLiteral("--http=off"), QStringLiteral("--root"), root.path(),
                                          QStringLiteral("--record"), expected_record, QStringLiteral("--snapshot"),
                                          expected_picture, QStringLiteral("map"), QString(), QStringLiteral("0")});
    send(simulator, messages);
    takePicture(simulator);
  }
  const auto simulator = panel();
  const auto driver = daemon();
  send(*driver, messages);
  const QByteArray expected = transfers(expected_record);
  ASSERT_TRUE(recorded(expected.count('\n')));
  takePicture(*simulator);
  EXPECT_EQ(transfers(record), expected);
  EXPECT_THAT(expected.toStdString(), HasSubstr("w 0900 1 6500\n"));
  EXPECT_EQ(test::read_file(picture), test::read_file(expected_picture));
}

TEST_F(DeviceTest, the_panel_keeps_what_it_shows_while_its_driver_is_started_again) {
  const auto simulator = panel();
  auto driver = daemon();
  send(*driver, messages);
  ASSERT_TRUE(recorded(at_start + of_messages));
  driver->sendSignal(SIGKILL);
  ASSERT_TRUE(simulator->waitForOutput("buttondriver-sim: the driver has gone\n"));
  takePicture(*simulator);
  const QByteArray before = test::read_file(picture);
  driver = daemon();
  EXPECT_TRUE(simulator->waitForOutput("buttondriver-sim: a driver has opened the device\n", 2));
  send(*driver, "00000017 0000000f 00000001 00000000 00000001 00000003 486900");
  ASSERT_TRUE(recorded(2 * at_start + of_messages + of_text));
  simulator->sendSignal(SIGTERM);
  EXPECT_EQ(simulator->waitForEnd(), 0);
  EXPECT_EQ(test::read_file(picture), before);
  EXPECT_FALSE(QFile::exists(device));
}

TEST_F(DeviceTest, without_a_panel_the_daemon_runs_on_as_without_its_device) {
  const auto driver = daemon();
  send(*driver, messages);
  EXPECT_TRUE(driver->waitForError("buttondriver-device: no virtual panel at " + QFile::encodeName(device) +
                                   ": No such file or directory\n"));
  EXPECT_TRUE(driver->isRunning());
}

TEST_F(DeviceTest, the_daemon_runs_on_when_the_panel_ends_first) {
  auto simulator = panel();
  const auto driver = daemon();
  ASSERT_TRUE(recorded(at_start));
  simulator.reset();
  for (int times = 0; times < 3; ++times)
    send(*driver, messages);
  EXPECT_TRUE(driver->isRunning());
}

TEST_F(DeviceTest, a_second_driver_is_refused_and_the_first_goes_on) {
  const auto simulator = panel();
  const auto first = daemon();
  ASSERT_TRUE(recorded(at_start));
  const auto second = daemon();
  send(*second, messages);
  EXPECT_TRUE(second->waitForError(": Device or resource busy\n"));
  ASSERT_TRUE(simulator->waitForOutput("buttondriver-sim: the device has a driver, another one was refused\n"));
  send(*first, "0000000c 00000015 0000001f 00000001");
  ASSERT_TRUE(recorded(at_start + 1));
  EXPECT_TRUE(transfers(record).endsWith("w 0900 1 bf00\n"));
}

TEST_F(DeviceTest, a_scenario_finds_what_the_panel_shows) {
  const auto simulator = panel({QStringLiteral("--http=0"), QStringLiteral("--font=8x16")});
  if (!simulator->waitForOutput("buttondriver-sim: page on "))
    GTEST_SKIP() << "this build has no page";
  static const QRegularExpression address(QStringLiteral("page on (\\S+)/"));
  const QString page = address.match(QString::fromLatin1(simulator->standardOutput())).captured(1);
  const auto driver = daemon();
  const auto run = [&](const char *scenario, const QStringList &options) {
    test::write_file(file("a.scenario"), scenario);
    Program tool(QStringLiteral(BUTTONCTL_PROGRAM),
                 QStringList{QStringLiteral("-p"), QString::number(driver->listeningPort()), QStringLiteral("run"),
                             file("a.scenario"), QStringLiteral("--panel"), page} +
                     options);
    const int status = tool.waitForEnd();
    return std::make_pair(status, tool.standardError().toStdString());
  };
  EXPECT_EQ(run("text all 0 Ready\nled 5 on\nstatus 31 on\ntoggle 1 on\n"
                "expect-led 5 on --timeout 20000\nexpect-status 31 on --timeout 20000\n"
                "expect-toggle 1 on --timeout 20000\nexpect-intensity 63\n",
                {}),
            std::make_pair(0, std::string()));
  EXPECT_EQ(run("expect-screen 0 ready.png\n", {QStringLiteral("--update")}), std::make_pair(0, std::string()));
  EXPECT_EQ(run("blackout 0\ntext 0 0 Ready\nexpect-screen 0 ready.png --timeout 20000\n", {}),
            std::make_pair(0, std::string()));
  EXPECT_EQ(run("expect-text 0 0 Ready\nexpect-text 1 0 Ready\nexpect-text 1 1 ''\n", {}),
            std::make_pair(0, std::string()));
  const auto [status, error] = run("expect-led 5 blinking --timeout 1\n", {});
  EXPECT_EQ(status, 4);
  EXPECT_THAT(error, HasSubstr("whether LED 5 blinks is not known, because another program drives the panel\n"));
}

TEST_F(DeviceTest, a_socket_that_cannot_be_had_is_one_line_and_exit_status_1) {
  const auto simulator = panel();
  const std::pair<QString, const char *> rows[] = {
      {device, ": another program listens there\n"},
      {folder.path(), ": another file is there that is no socket\n"},
      {file("nowhere/device"), ": No such file or directory\n"},
      {file("long-") + QString(200, QLatin1Char('x')), " bytes, and a socket's has 107 at most\n"},
  };
  for (const auto &[path, reason] : rows) {
    Program other(simulator_program, {QStringLiteral("--http=off"), QStringLiteral("--device"), path});
    EXPECT_EQ(other.waitForEnd(), 1) << reason;
    const std::string error = other.standardError().toStdString();
    EXPECT_THAT(error, HasSubstr("buttondriver-sim: no device at " + path.toStdString() + ": "));
    EXPECT_THAT(error, HasSubstr(reason));
  }
}

TEST_F(DeviceTest, what_belongs_to_a_daemon_is_a_bad_command_line) {
  const QStringList rows[] = {
      {QStringLiteral("--device"), QString()},
      {QStringLiteral("--device"), device, QStringLiteral("--root"), root.path()},
      {QStringLiteral("--device"), device, QStringLiteral("map")},
  };
  for (const QStringList &arguments : rows) {
    Program simulator(simulator_program, arguments);
    EXPECT_EQ(simulator.waitForEnd(), 2);
    EXPECT_THAT(simulator.standardError().toStdString(), HasSubstr("--device"));
    EXPECT_FALSE(QFile::exists(device));
  }
}

} // namespace
} // namespace buttondriver
