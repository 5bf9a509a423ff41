// SPDX-License-Identifier: Apache-2.0
// The examples, built from the installed package, say and do what they are there for.

#include "support/event_loop.h"
#include "support/program.h"
#include "support/test_root.h"

#include <QFile>
#include <QHostAddress>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

namespace buttondriver {
namespace {

using test::Program;
using test::read_file;

QString built(const QString &example) { return QStringLiteral(BUILT_EXAMPLES "/") + example; }

std::string expected_output(const QString &example) {
  return read_file(QStringLiteral(EXAMPLES "/%1/expected_output.txt").arg(example.section(QLatin1Char('/'), 0, 0)))
      .toStdString();
}

/// The ready-made panel beside a client, with a record of what is done to it.
class Panel {
public:
  Panel()
      : _record(_folder.filePath(QStringLiteral("record"))),
        _simulator(QStringLiteral(BUTTONDRIVER_SIM_PROGRAM),
                   {QStringLiteral("--http=off"), QStringLiteral("--record"), _record, QStringLiteral("map"), QString(),
                    QStringLiteral("0")}) {
    EXPECT_TRUE(_simulator.waitForOutput("buttondriver-sim: listening on port "));
  }

  QString port() { return QString::number(_simulator.listeningPort()); }
  bool has_done(const QByteArray &transfer) const { return read_file(_record).contains(transfer); }
  bool comes_to_do(const QByteArray &transfer) const {
    return test::process_events_until([&] { return has_done(transfer); }, std::chrono::seconds(20));
  }

private:
  QTemporaryDir _folder;
  QString _record;
  Program _simulator;
};

/// "event_client_c" of "01-event-client-c/event_client_c".
std::string program_of(const std::string &example) { return example.substr(example.find('/') + 1); }

struct ClientRow {
  const char *example;
  std::vector<const char *> transfers;
};

void PrintTo(const ClientRow &row, std::ostream *stream) { *stream << row.example; }

class ClientExampleTest : public testing::TestWithParam<ClientRow> {};

TEST_P(ClientExampleTest, says_what_it_should_and_the_panel_does_it) {
  const QString example = QString::fromLatin1(GetParam().example);
  Panel panel;
  for (const char *transfer : GetParam().transfers)
    EXPECT_FALSE(panel.has_done(transfer)) << transfer;
  Program client(built(example), {QStringLiteral("127.0.0.1"), panel.port()});
  ASSERT_EQ(client.waitForEnd(), 0) << client.standardError().toStdString();
  EXPECT_EQ(client.standardOutput().toStdString(), expected_output(example));
  for (const char *transfer : GetParam().transfers)
    EXPECT_TRUE(panel.comes_to_do(transfer)) << transfer;
}

INSTANTIATE_TEST_SUITE_P(
    Examples, ClientExampleTest,
    testing::Values(
        // A line on screen 0; button LED 5 on, brightness at 63.
        ClientRow{"01-event-client-c/event_client_c", {" w 0a03 2048 0000 ", " w 0900 1 6500\n", " w 0800 1 ff00\n"}},
        // A line of 128 x 16 pixels on all screens, with white beside black; LED 5 off and on; status LED 0 on.
        ClientRow{"02-qt-client/qt_client",
                  {" w 0a0f 2048 0000 ", " ffff 0000 ", " w 0900 1 4500\n", " w 0900 1 6500\n", " w 0900 1 a000\n"}},
        ClientRow{"09-event-client-pkg-config/brightness", {" w 0800 1 ff00\n"}},
        // A line on screen 0 and five cells of it in red; two rows of a picture on screen 1; button LED 5 and status
        // LED 0 on.
        ClientRow{"13-c-client/c_client",
                  {" w 0a03 2048 0000 ", " w 0a03 640 0000 ", " f800 0000 ", " w 0900 1 6500\n", " w 0900 1 a000\n"}}),
    [](const auto &row) { return program_of(row.param.example); });

class ClientWithoutPanelTest : public testing::TestWithParam<const char *> {};

TEST_P(ClientWithoutPanelTest, says_so_and_fails) {
  // Bound and not listening: nobody else gets this port meanwhile, and who connects is refused.
  QTcpSocket placeholder;
  ASSERT_TRUE(placeholder.bind(QHostAddress(QHostAddress::LocalHost), 0));
  const QString port = QString::number(placeholder.localPort());
  Program client(built(QString::fromLatin1(GetParam())), {QStringLiteral("127.0.0.1"), port});
  ASSERT_EQ(client.waitForEnd(), 1);
  EXPECT_EQ(client.standardError().toStdString(), "no panel at 127.0.0.1 port " + port.toStdString() + "\n");
}

INSTANTIATE_TEST_SUITE_P(Examples, ClientWithoutPanelTest,
                         testing::Values("01-event-client-c/event_client_c", "02-qt-client/qt_client",
                                         "09-event-client-pkg-config/brightness", "13-c-client/c_client"),
                         [](const auto &row) { return program_of(row.param); });

class LoneExampleTest : public testing::TestWithParam<const char *> {};

TEST_P(LoneExampleTest, says_what_it_should) {
  qputenv("TZ", "UTC0");
  const QString example = QString::fromLatin1(GetParam());
  Program program(built(example), {});
  ASSERT_EQ(program.waitForEnd(), 0) << program.standardError().toStdString();
  EXPECT_EQ(program.standardOutput().toStdString(), expected_output(example));
}

INSTANTIATE_TEST_SUITE_P(Examples, LoneExampleTest,
                         testing::Values("03-encoders/encoders", "04-protocol/protocol",
                                         "07-character-display/character_display", "08-stopwatch/stopwatch"),
                         [](const auto &row) { return program_of(row.param); });

TEST(UnixSignalsExampleTest, tells_each_signal_and_ends_in_order) {
  const QString example = QStringLiteral("05-unix-signals/unix_signals");
  Program program(built(example), {});
  ASSERT_TRUE(program.waitForOutput("ready\n"));
  program.sendSignal(SIGHUP);
  ASSERT_TRUE(program.waitForOutput("SIGHUP: reading the configuration\n"));
  program.sendSignal(SIGTERM);
  ASSERT_EQ(program.waitForEnd(), 0);
  EXPECT_EQ(program.standardOutput().toStdString(), expected_output(example));
}

TEST(ButtonLevelExampleTest, halves_the_level_of_the_screens) {
  const QString example = QStringLiteral("06-button-level/button_level");
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("buttonlevel"));
  Program program(built(example), {file});
  ASSERT_EQ(program.waitForEnd(), 0);
  EXPECT_EQ(program.standardOutput().toStdString(), expected_output(example));
  EXPECT_EQ(read_file(file), "lcd 100\nscr 50\n");
}

} // namespace
} // namespace buttondriver
