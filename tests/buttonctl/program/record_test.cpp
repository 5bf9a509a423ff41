// SPDX-License-Identifier: Apache-2.0
// `buttonctl record` and `buttonctl replay`, with the virtual panel and with a daemon that only listens.

#include "buttonctl/support/fake_daemon.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/tool_run.h"
#include "buttonctl/support/working_folder.h"
#include "support/event_loop.h"
#include "support/hex.h"
#include "support/program.h"
#include "support/test_root.h"

#include <QElapsedTimer>
#include <QHostAddress>

#include <gmock/gmock.h>

#include <csignal>

namespace buttondriver::test {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::MatchesRegex;

const QByteArray pong = QByteArray::fromHex("0000000400000001");

/// A built recorder between the test and the daemon on `port`, and a file of its own in the current folder.
class RecorderRun {
public:
  explicit RecorderRun(quint16 port)
      : _program(QStringLiteral(BUTTONCTL), {"record", "a.rec", "--listen", "0", "--to",
                                             QStringLiteral("127.0.0.1:%1").arg(port), "--timeout", "5000"}) {
    EXPECT_TRUE(_program.waitForOutput("recording into a.rec: 127.0.0.1 port "));
    _port = _program.listeningPort();
  }

  quint16 port() const { return _port; }
  QString port_text() const { return QString::number(_port); }
  Program &program() { return _program; }
  std::unique_ptr<QTcpSocket> connect() { return _program.connectTo(); }

  /// Waits for `count` frames in the file.
  bool has_recorded(int count) {
    return process_events_until([&] { return read_file(QStringLiteral("a.rec")).count('\n') == count + 1; });
  }

  /// Ends it with `signal`; its exit status.
  int end(int signal = SIGINT) {
    _program.sendSignal(signal);
    return _program.waitForEnd();
  }

private:
  Program _program;
  quint16 _port = 0;
};

/// Connection and frame of each line of the recording.
std::string recorded_frames() {
  std::string text;
  const QList<QByteArray> lines = read_file(QStringLiteral("a.rec")).split('\n');
  EXPECT_EQ(lines.first().toStdString(), "buttonctl recording 1");
  qint64 last_time = 0;
  for (int i = 1; i + 1 < lines.size(); ++i) {
    const QList<QByteArray> items = lines[i].split(' ');
    EXPECT_EQ(items.size(), 3) << lines[i].toStdString();
    EXPECT_GE(items[0].toLongLong(), last_time);
    last_time = items[0].toLongLong();
    text += items.value(1).toStdString() + ' ' + items.value(2).toStdString() + '\n';
  }
  EXPECT_EQ(lines.last().toStdString(), "") << "the last line has no end";
  return text;
}

std::unique_ptr<Program> start_simulator(const TestRoot &root, const QString &record) {
  auto simulator = std::make_unique<Program>(
      QStringLiteral(BUTTONDRIVER_SIM_PROGRAM),
      QStringList{"--http", "off", "--root", root.path(), "--record", record, "map", QString(), "0"});
  EXPECT_TRUE(simulator->waitForOutput("buttondriver-sim: listening on port "));
  return simulator;
}

/// A recording of the simulator without its times.
std::string transfers(const QString &file) {
  std::string text;
  const QList<QByteArray> lines = read_file(file).split('\n');
  for (const QByteArray &line : lines)
    text += line.mid(line.indexOf(' ') + 1).toStdString() + '\n';
  return text;
}

TEST(RecordTest, a_replayed_recording_makes_the_same_transfers) {
  const WorkingFolder folder;
  folder.write("dot.bmp", bmp_2x2());
  TestRoot root;
  root.writeFontSize(8, 16);
  folder.write("all.txt", "text 0 0 'Channel 7'\nsubtext 1 2 3 abcd --colour FF0000\nimage 2 dot.bmp --at 60,40\n"
                          "led 5 on\nstatus 3 on\ntoggle 1 on\nblackout 0\ntext all 1 Ready --black-on-white\nping\n");
  {
    const auto simulator = start_simulator(root, QStringLiteral("original"));
    RecorderRun recorder(simulator->listeningPort());
    const ToolResult sent = run_tool({"-p", recorder.port_text(), "batch", "all.txt"});
    EXPECT_EQ(sent.exit_status, 0) << sent.errors;
    EXPECT_EQ(run_tool({"-p", recorder.port_text(), "ping"}).exit_status, 0);
    ASSERT_TRUE(recorder.has_recorded(10));
    EXPECT_EQ(recorder.end(), 0);
    EXPECT_THAT(recorder.program().standardOutput().toStdString(), HasSubstr("recorded 10 frames of 2 connections\n"));
    simulator->sendSignal(SIGTERM);
    EXPECT_EQ(simulator->waitForEnd(), 0);
  }
  {
    const auto simulator = start_simulator(root, QStringLiteral("replayed"));
    const ToolResult replayed =
        run_tool({"-p", QString::number(simulator->listeningPort()), "replay", "a.rec", "--speed", "2"});
    EXPECT_EQ(replayed.exit_status, 0) << replayed.errors;
    EXPECT_EQ(replayed.output, "");
    // Its end says that the daemon has read everything.
    ASSERT_TRUE(simulator->waitForError("client disconnected"));
    simulator->sendSignal(SIGTERM);
    EXPECT_EQ(simulator->waitForEnd(), 0);
  }
  EXPECT_EQ(transfers(QStringLiteral("replayed")), transfers(QStringLiteral("original")));
  EXPECT_GT(transfers(QStringLiteral("original")).size(), 10000U);
}

TEST(RecordTest, keeps_the_frames_of_several_clients_and_brings_answers_back) {
  const WorkingFolder folder;
  FakeDaemon daemon;
  daemon.answer_pings_with(pong);
  RecorderRun recorder(daemon.port());
  const auto first = recorder.connect();
  // Before the second one comes, so that their numbers are certain.
  ASSERT_TRUE(answered_ping(*first));
  const auto second = recorder.connect();
  ASSERT_TRUE(answered_ping(*second));
  ASSERT_TRUE(answered_ping(*first));
  send_frames(*second, "00000008 00000010 00000002 00000000 00000004 0000000c");
  ASSERT_TRUE(process_events_until([&] { return second->bytesAvailable() >= 8; }));
  EXPECT_EQ(second->readAll(), pong);
  EXPECT_EQ(recorder.end(SIGTERM), 0);
  EXPECT_EQ(recorded_frames(), "1 000000040000000c\n2 000000040000000c\n1 000000040000000c\n"
                               "2 000000080000001000000002\n2 00000000\n2 000000040000000c\n");
  EXPECT_EQ(recorder.program().standardError(), "");
}

TEST(RecordTest, finds_frames_that_tcp_has_cut) {
  const WorkingFolder folder;
  FakeDaemon daemon;
  RecorderRun recorder(daemon.port());
  const auto client = recorder.connect();
  const QByteArray stream = QByteArray::fromHex("000000080000001000000002"
                                                "00000002ffee");
  for (int i = 0; i < stream.size(); ++i) {
    send_frames(*client, stream.mid(i, 1).toHex());
    // Each byte alone has gone all the way.
    ASSERT_TRUE(process_events_until([&] { return daemon.received().size() == i + 1; }));
  }
  EXPECT_EQ(recorder.end(), 0);
  EXPECT_EQ(recorded_frames(), "1 000000080000001000000002\n1 00000002ffee\n");
}

TEST(RecordTest, megabytes_pass_both_ways_through_a_daemon_that_reads_late) {
  const WorkingFolder folder;
  FakeDaemon daemon;
  daemon.leave_unread();
  RecorderRun recorder(daemon.port());
  const auto client = recorder.connect();
  QByteArray stream;
  for (int i = 0; i < 64; ++i)
    stream += QByteArray::fromHex("0000ffff") + QByteArray(0xFFFF, static_cast<char>(i));
  client->write(stream);
  ASSERT_TRUE(process_events_until([&] { return daemon.open_connections() == 1; }));
  const QByteArray answer(3 * 1024 * 1024, 'a');
  daemon.write(answer);
  daemon.read_on();
  ASSERT_TRUE(
      process_events_until([&] { return daemon.received().size() >= stream.size(); }, std::chrono::seconds(60)));
  EXPECT_TRUE(daemon.received() == stream);
  ASSERT_TRUE(
      process_events_until([&] { return client->bytesAvailable() >= answer.size(); }, std::chrono::seconds(60)));
  EXPECT_TRUE(client->readAll() == answer);
  EXPECT_EQ(recorder.end(), 0);
  const QByteArray recording = read_file(QStringLiteral("a.rec"));
  EXPECT_EQ(recording.count('\n'), 65);
  EXPECT_TRUE(recording.endsWith(" 1 0000ffff" + QByteArray(0xFFFF, '\x3f').toHex() + "\n"));
}

TEST(RecordTest, what_a_client_left_behind_reaches_the_daemon) {
  const WorkingFolder folder;
  FakeDaemon daemon;
  RecorderRun recorder(daemon.port());
  auto client = recorder.connect();
  send_frames(*client, "00000008 00000010 00000002");
  client->disconnectFromHost();
  ASSERT_TRUE(process_events_until([&] { return daemon.connections() == 1 && daemon.open_connections() == 0; }));
  EXPECT_EQ(to_hex(daemon.received().toStdString()), to_hex(from_hex("00000008 00000010 00000002")));
  EXPECT_EQ(recorder.end(), 0);
  EXPECT_EQ(recorded_frames(), "1 000000080000001000000002\n");
}

TEST(RecordTest, a_client_is_hung_up_on_when_the_daemon_has_gone) {
  const WorkingFolder folder;
  FakeDaemon daemon;
  daemon.when_received([](QTcpSocket &socket) { socket.disconnectFromHost(); });
  RecorderRun recorder(daemon.port());
  const auto client = recorder.connect();
  send_frames(*client, "00000004 0000000c");
  ASSERT_TRUE(process_events_until([&] { return client->state() == QAbstractSocket::UnconnectedState; }));
  EXPECT_EQ(recorder.end(), 0);
  EXPECT_EQ(recorded_frames(), "1 000000040000000c\n");
}

TEST(RecordTest, a_daemon_that_cannot_be_reached_is_told_and_recording_goes_on) {
  const WorkingFolder folder;
  const RefusingPort nobody;
  RecorderRun recorder(nobody.port());
  for (int number = 1; number <= 2; ++number) {
    const auto client = recorder.connect();
    send_frames(*client, "00000004 0000000c");
    ASSERT_TRUE(process_events_until([&] { return client->state() == QAbstractSocket::UnconnectedState; }));
    ASSERT_TRUE(recorder.program().waitForError("connection " + QByteArray::number(number) +
                                                ": cannot connect to 127.0.0.1 port "));
  }
  EXPECT_EQ(recorder.end(), 0);
  EXPECT_EQ(recorded_frames(), "");
}

TEST(RecordTest, bytes_that_are_no_whole_frame_are_passed_on_and_told) {
  struct Row {
    const char *stream;
    const char *frames;
    const char *says;
  };
  const Row rows[] = {
      {"000000040000000c 000000080000", "1 000000040000000c\n",
       "buttonctl: connection 1 ended in the middle of a frame; its last 6 bytes are not in the recording\n"},
      {"000000040000000c ffffffff 000000040000000c", "1 000000040000000c\n",
       "buttonctl: connection 1: a frame says that it has more than 16777216 bytes; what follows on this connection is "
       "passed on but not recorded\n"},
  };
  for (const Row &row : rows) {
    const WorkingFolder folder;
    FakeDaemon daemon;
    RecorderRun recorder(daemon.port());
    auto client = recorder.connect();
    send_frames(*client, row.stream);
    client->disconnectFromHost();
    ASSERT_TRUE(recorder.program().waitForError(row.says)) << recorder.program().standardError().toStdString();
    // It is told before the bytes have gone all the way.
    const QByteArray stream = QByteArray::fromStdString(from_hex(row.stream));
    EXPECT_TRUE(process_events_until([&] { return daemon.received().size() >= stream.size(); }));
    EXPECT_EQ(to_hex(daemon.received().toStdString()), to_hex(stream.toStdString()));
    EXPECT_EQ(recorder.end(), 0);
    EXPECT_EQ(recorded_frames(), row.frames);
  }
}

TEST(RecordTest, what_keeps_it_from_starting_is_one_line_and_exit_status_1) {
  const WorkingFolder folder;
  const RefusingPort taken;
  struct Row {
    QStringList arguments;
    const char *pattern;
  };
  const Row rows[] = {
      {{"record", "a.rec", "--listen", QString::number(taken.port())},
       "buttonctl: cannot listen on 127.0.0.1 port [0-9]+: [^\n]+\n"},
      {{"record", "/no/such/a.rec", "--listen", "0"},
       "buttonctl: cannot write '/no/such/a.rec': No such file or directory\n"},
  };
  for (const Row &row : rows) {
    const ToolResult result = run_tool(row.arguments);
    EXPECT_EQ(result.exit_status, 1) << row.pattern;
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, MatchesRegex(row.pattern));
  }
  EXPECT_FALSE(QFile::exists(QStringLiteral("a.rec"))) << "a recorder that cannot listen must not touch the file";
}

TEST(RecordTest, a_full_disk_ends_it_with_exit_status_1) {
  FakeDaemon daemon;
  const WorkingFolder folder;
  const ToolResult result =
      run_tool({"record", "/dev/full", "--listen", "0", "--port", QString::number(daemon.port())});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.errors, "buttonctl: cannot write to '/dev/full': No space left on device\n");
}

QStringList replay(const FakeDaemon &daemon, const QStringList &options = {}) {
  return QStringList{"-p", QString::number(daemon.port()), "replay", "a.rec"} + options;
}

TEST(ReplayTest, uses_a_connection_for_each_of_the_recording) {
  const WorkingFolder folder;
  folder.write("a.rec", "buttonctl recording 1\n"
                        "5000000 7 000000080000001000000000\n"
                        "5100000 3 000000080000001000000001\n"
                        "5200000 7 000000080000001000000002\n");
  FakeDaemon daemon;
  daemon.answer_pings_with(pong);
  QElapsedTimer elapsed;
  elapsed.start();
  const ToolResult result = run_tool(replay(daemon));
  EXPECT_EQ(result.exit_status, 0) << result.errors;
  EXPECT_GE(elapsed.elapsed(), 200) << "the last frame is due 0.2 s after the first one";
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(daemon.connections(), 2);
  // On a busy machine the daemon may take the other connection's frame earlier or later.
  EXPECT_THAT(to_hex(daemon.received().toStdString()),
              AnyOf("000000080000001000000000000000080000001000000001000000080000001000000002",
                    "000000080000001000000000000000080000001000000002000000080000001000000001",
                    "000000080000001000000001000000080000001000000000000000080000001000000002"));
}

TEST(ReplayTest, answers_are_dropped_and_do_not_hold_it_up) {
  const WorkingFolder folder;
  QByteArray recording = "buttonctl recording 1\n";
  for (int i = 0; i < 1000; ++i)
    recording += QByteArray::number(i) + " 1 000000040000000c\n";
  folder.write("a.rec", recording);
  FakeDaemon daemon;
  daemon.answer_pings_with(pong);
  const ToolResult result = run_tool(replay(daemon));
  EXPECT_EQ(result.exit_status, 0) << result.errors;
  EXPECT_EQ(daemon.received().size(), 8000);
}

TEST(ReplayTest, a_cut_off_last_line_is_told_and_left_out) {
  const WorkingFolder folder;
  folder.write("a.rec", "buttonctl recording 1\n0 1 000000080000001000000000\n9 1 00000008000000");
  FakeDaemon daemon;
  const ToolResult result = run_tool(replay(daemon));
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.errors, "buttonctl: a.rec:3: the last line is cut off and left out: FRAME says that 8 bytes follow "
                           "its length, but 3 do\n");
  EXPECT_EQ(to_hex(daemon.received().toStdString()), "000000080000001000000000");
}

TEST(ReplayTest, a_bad_recording_is_exit_status_2_and_nothing_is_sent) {
  const WorkingFolder folder;
  folder.write("a.rec", "buttonctl recording 1\n0 1 000000080000001000000000\n9 1 x\n");
  FakeDaemon daemon;
  const ToolResult result = run_tool(replay(daemon));
  EXPECT_EQ(result.exit_status, 2);
  EXPECT_EQ(result.errors, "buttonctl: a.rec:3: FRAME must be hexadecimal digits, not 'x'\n");
  EXPECT_EQ(daemon.connections(), 0);
}

TEST(ReplayTest, a_dry_run_prints_the_frames) {
  const WorkingFolder folder;
  folder.write("a.rec", "buttonctl recording 1\n0 1 00000000\n999999999 2 000000040000000C\n");
  FakeDaemon daemon;
  const ToolResult result = run_tool(replay(daemon, {"--dry-run"}));
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.output, "00000000\n000000040000000c\n");
  EXPECT_EQ(daemon.connections(), 0);
}

TEST(ReplayTest, a_daemon_that_cannot_be_reached_is_exit_status_1) {
  const WorkingFolder folder;
  // The second frame is due in an hour, which must not be waited for.
  folder.write("a.rec", "buttonctl recording 1\n0 1 00000000\n3600000000 1 00000000\n");
  const RefusingPort nobody;
  const ToolResult result = run_tool({"-p", QString::number(nobody.port()), "replay", "a.rec"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.errors, MatchesRegex("buttonctl: a.rec:3: connection 1: 127.0.0.1 port [0-9]+ refuses the "
                                          "connection; is the daemon running there\\?\n"));
}

TEST(ReplayTest, a_lost_connection_is_exit_status_1) {
  const WorkingFolder folder;
  folder.write("a.rec", "buttonctl recording 1\n0 4 00000000\n3600000000 4 00000000\n");
  FakeDaemon daemon;
  daemon.when_received([](QTcpSocket &socket) { socket.abort(); });
  const ToolResult result = run_tool(replay(daemon));
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.errors, MatchesRegex("buttonctl: a.rec:3: connection 4: lost the connection to 127.0.0.1 port "
                                          "[0-9]+ before everything was sent; is the daemon still running\\?\n"));
}

TEST(ReplayTest, a_daemon_that_takes_no_data_is_exit_status_1) {
  const WorkingFolder folder;
  folder.write("a.rec", "buttonctl recording 1\n0 1 00c00000" + QByteArray(2 * 0xc00000, '0') + "\n");
  FakeDaemon daemon;
  daemon.leave_unread();
  const ToolResult result = run_tool(replay(daemon, {"--timeout", "300"}));
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.errors, MatchesRegex("buttonctl: connection 1: 127.0.0.1 port [0-9]+ takes no data for 300 ms; "
                                          "allow more time with --timeout\n"));
}

} // namespace
} // namespace buttondriver::test
