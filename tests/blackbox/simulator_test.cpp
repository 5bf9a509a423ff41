// SPDX-License-Identifier: Apache-2.0
// The virtual panel's command line, pictures and recording.

#include "simulator/http/web_page.h"
#include "support/program.h"
#include "support/test_root.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

namespace buttondriver {
namespace {

using test::Program;

const QString program = QStringLiteral(BUTTONDRIVER_SIM_PROGRAM);
/// The port of the page is the same for everybody: tests that run side by side leave it alone.
const QString without_page = QStringLiteral("--http=off");

TEST(SimulatorProgramTest, answers_help_and_version_on_standard_output) {
  Program help(program, {QStringLiteral("--help")});
  EXPECT_EQ(help.waitForEnd(), 0);
  for (const char *word : {"--root", "--font", "--intensity", "--port", "--http", "--ports-file", "--device",
                           "--snapshot", "--record", "--log", "--quiet", "--verbose", "MAP", "ADDRESS", "PORT"})
    EXPECT_TRUE(help.standardOutput().contains(word)) << word;
  Program version(program, {QStringLiteral("--version")});
  EXPECT_EQ(version.waitForEnd(), 0);
  EXPECT_TRUE(version.standardOutput().startsWith("buttondriver-sim "));
}

TEST(SimulatorProgramTest, a_bad_command_line_is_one_line_and_exit_status_2) {
  for (const QStringList &arguments :
       {QStringList{QStringLiteral("--bogus")}, QStringList{QStringLiteral("--root")},
        QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("0"), QStringLiteral("d")}}) {
    Program simulator(program, arguments);
    EXPECT_EQ(simulator.waitForEnd(), 2);
    const QByteArray error = simulator.standardError();
    EXPECT_TRUE(error.startsWith("buttondriver-sim: ")) << error.toStdString();
    EXPECT_EQ(error.count('\n'), 1) << error.toStdString();
    EXPECT_EQ(simulator.standardOutput(), "");
  }
}

TEST(SimulatorProgramTest, unwritable_recording_is_one_line_on_standard_error) {
  Program simulator(program, {QStringLiteral("--record"), QStringLiteral("/nowhere/at/all")});
  EXPECT_EQ(simulator.waitForEnd(), 1);
  EXPECT_EQ(simulator.standardError().count("buttondriver-sim: cannot write the recording /nowhere/at/all\n"), 1);
}

TEST(SimulatorProgramTest, page_that_cannot_be_served_is_one_line_and_a_failure) {
  QTcpServer taken;
  ASSERT_TRUE(taken.listen(QHostAddress(QHostAddress::LocalHost)));
  Program simulator(program, {QStringLiteral("--http"), QString::number(taken.serverPort()), QStringLiteral("map"),
                              QString(), QStringLiteral("0")});
  const QByteArray reason = simulator::WebPage::isAvailable() ? "buttondriver-sim: no web page on http://127.0.0.1:"
                                                              : "buttondriver-sim: there is no web page in this build";
  EXPECT_EQ(simulator.waitForEnd(), simulator::WebPage::isAvailable() ? 1 : 2);
  EXPECT_EQ(simulator.standardError().count(reason), 1) << simulator.standardError().toStdString();
}

TEST(SimulatorProgramTest, a_port_that_is_taken_is_one_line_with_who_has_it_and_exit_status_1) {
  QTcpServer taken;
  ASSERT_TRUE(taken.listen(QHostAddress(QHostAddress::Any)));
  const QString port = QString::number(taken.serverPort());
  Program simulator(program, {without_page, QStringLiteral("map"), QString(), port});
  EXPECT_EQ(simulator.waitForEnd(), 1);
  const QByteArray line = "buttondriver-sim: port " + port.toLatin1() + " is taken by blackbox_test (pid " +
                          QByteArray::number(QCoreApplication::applicationPid()) + ")\n";
  EXPECT_EQ(simulator.standardError().count(line), 1) << simulator.standardError().toStdString();
  EXPECT_FALSE(simulator.standardOutput().contains("listening"));
}

TEST(SimulatorProgramTest, missing_root_is_reported) {
  Program simulator(program, {without_page, QStringLiteral("--root"), QStringLiteral("/nowhere/at/all")});
  EXPECT_EQ(simulator.waitForEnd(), 1);
  EXPECT_EQ(simulator.standardError().count("buttondriver-sim: there is no folder /nowhere/at/all\n"), 1);
}

TEST(SimulatorProgramTest, the_ready_made_root_has_a_font) {
  Program simulator(program, {without_page, QStringLiteral("map"), QString(), QStringLiteral("0")});
  const auto client = simulator.connectTo();
  ASSERT_TRUE(test::answered_ping(*client));
  EXPECT_TRUE(simulator.standardError().contains("buttondriver: Successfully changed to font "));
  EXPECT_TRUE(simulator.standardError().contains("/8x16.pcf.gz\" \n"));
}

TEST(SimulatorProgramTest, takes_a_picture_on_usr1_and_at_the_end) {
  const test::TestRoot root;
  const QTemporaryDir folder;
  const QString picture = folder.filePath(QStringLiteral("panel.png"));
  Program simulator(program, {without_page, QStringLiteral("--root"), root.path(), QStringLiteral("--snapshot"),
                              picture, QStringLiteral("map"), QString(), QStringLiteral("0")});
  ASSERT_TRUE(simulator.waitForOutput("buttondriver-sim: listening on port "));
  const QByteArray wrote = "buttondriver-sim: wrote " + QFile::encodeName(picture) + "\n";
  simulator.sendSignal(SIGUSR1);
  ASSERT_TRUE(simulator.waitForOutput(wrote));
  const QByteArray before = test::read_file(picture);
  EXPECT_TRUE(before.startsWith("\x89PNG"));

  const auto client = simulator.connectTo();
  test::send_frames(*client, "0000000c 00000015 00000001 00000001");
  ASSERT_TRUE(test::answered_ping(*client));
  simulator.sendSignal(SIGINT);
  EXPECT_EQ(simulator.waitForEnd(), 0);
  EXPECT_EQ(simulator.standardOutput().count(wrote), 2);
  EXPECT_NE(test::read_file(picture), before);
}

/// A simulator on a free port that records its transfers.
class RecordedSimulatorTest : public testing::Test {
protected:
  const test::TestRoot root;
  const QTemporaryDir folder;
  const QString record = folder.filePath(QStringLiteral("record"));
  Program simulator{program,
                    {without_page, QStringLiteral("--root"), root.path(), QStringLiteral("--record"), record,
                     QStringLiteral("map"), QString(), QStringLiteral("0")}};
};

TEST_F(RecordedSimulatorTest, a_picture_shows_all_work_that_was_accepted_before_it) {
  const auto client = simulator.connectTo();
  QByteArray blackouts;
  for (int i = 0; i < 200; ++i)
    blackouts += "00000008 00000010 00000000";
  test::send_frames(*client, blackouts);
  ASSERT_TRUE(test::answered_ping(*client));
  simulator.sendSignal(SIGTERM);
  EXPECT_EQ(simulator.waitForEnd(), 0);
  EXPECT_EQ(test::read_file(record).count('\n'), 12 * 201);
}

TEST_F(RecordedSimulatorTest, blinking_goes_on_by_itself) {
  const auto client = simulator.connectTo();
  test::send_frames(*client, "00000010 00000011 00000005 ffffffff 00000014");
  // Each ping is a round trip through the daemon, so this waits for its timer, not for a clock.
  while (test::read_file(record).count(" w 0900 1 6500\n") < 3)
    ASSERT_TRUE(test::answered_ping(*client));
  QByteArray values;
  const QList<QByteArray> lines = test::read_file(record).split('\n');
  for (const QByteArray &line : lines)
    if (line.contains(" w 0900 1 "))
      values += line.mid(line.lastIndexOf(' ') + 1) + ' ';
  EXPECT_TRUE(values.startsWith("4500 6500 4500 6500 4500 6500 ")) << values.toStdString();
}

TEST_F(RecordedSimulatorTest, records_microseconds_direction_address_count_and_words) {
  ASSERT_TRUE(simulator.waitForOutput("buttondriver-sim: listening on port "));
  simulator.sendSignal(SIGTERM);
  EXPECT_EQ(simulator.waitForEnd(), 0);
  static const QRegularExpression form(QStringLiteral("^\\d+ [rw] [0-9a-f]{4} (\\d+)(( [0-9a-f]{4})*)$"));
  qint64 last = -1;
  QList<QByteArray> lines = test::read_file(record).split('\n');
  lines.removeLast();
  EXPECT_EQ(lines.size(), 12);
  for (const QByteArray &line : lines) {
    const QRegularExpressionMatch match = form.match(QString::fromLatin1(line));
    ASSERT_TRUE(match.hasMatch()) << line.left(80).toStdString();
    EXPECT_EQ(match.captured(2).size(), match.captured(1).toInt() * 5);
    const qint64 time = line.split(' ').first().toLongLong();
    EXPECT_GE(time, last);
    last = time;
  }
}

} // namespace
} // namespace buttondriver
