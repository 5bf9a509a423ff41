// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/support/fake_daemon.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/tool_run.h"
#include "buttonctl/support/working_folder.h"
#include "support/hex.h"

#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace buttondriver::test {
namespace {

using testing::ContainsRegex;
using testing::MatchesRegex;
using testing::StartsWith;

const QByteArray pong = QByteArray::fromHex("0000000400000001");

std::string hex(const QByteArray &bytes) { return to_hex(bytes.toStdString()); }
std::string golden(const char *digits) { return to_hex(from_hex(digits)); }

QString number(int value) { return QString::number(value); }

/// Serves the daemon until `done`, at most for half a minute.
template <class Condition> bool wait_until(Condition done) {
  QEventLoop loop;
  QTimer deadline;
  deadline.setSingleShot(true);
  deadline.start(30000);
  while (!done() && deadline.isActive())
    loop.processEvents(QEventLoop::WaitForMoreEvents);
  return done();
}

/// What has come from clients that have all closed their connections.
const QByteArray &all_received(const FakeDaemon &daemon) {
  EXPECT_TRUE(wait_until([&daemon] { return daemon.connections() > 0 && daemon.open_connections() == 0; }));
  return daemon.received();
}

/// A message large enough not to vanish in the buffers of the system.
QByteArray long_line() { return "raw " + QByteArray(2 * 12 * 1024 * 1024, '0') + "\n"; }

TEST(ButtonctlTest, sends_one_frame_and_closes) {
  FakeDaemon daemon;
  const ToolResult result = run_tool({"--port", number(daemon.port()), "text", "1", "2", "Hi"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(hex(all_received(daemon)), golden("00000017 0000000f 00000001 00000002 00000001 00000003 486900"));
  EXPECT_EQ(daemon.connections(), 1);
}

TEST(ButtonctlTest, texts_are_utf8_in_every_locale) {
  FakeDaemon daemon;
  qputenv("LC_ALL", "C");
  const ToolResult result = run_tool({"--port", number(daemon.port()), "text", "0", "0", QStringLiteral("\u00e9")});
  qunsetenv("LC_ALL");
  EXPECT_EQ(result.exit_status, 0) << result.errors;
  EXPECT_EQ(hex(all_received(daemon)), golden("00000016 0000000f 00000000 00000000 00000001 00000002 e900"));
}

TEST(ButtonctlTest, an_image_is_sent_without_a_word) {
  const WorkingFolder folder;
  folder.write("dot.bmp",
               QByteArray::fromStdString(from_hex("424d 3a000000 0000 0000 36000000 28000000 01000000 01000000"
                                                  "0100 1800 00000000 00000000 00000000 00000000 00000000"
                                                  "00000000 0000ff00")));
  FakeDaemon daemon;
  const ToolResult result = run_tool({"--port", number(daemon.port()), "image", "0", "dot.bmp", "--at=5,6"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(hex(all_received(daemon)),
            golden("0000004e 00000013 00000000 00000005 00000006 0000003a"
                   "424d 3a000000 0000 0000 36000000 28000000 01000000 01000000"
                   "0100 1800 00000000 00000000 00000000 00000000 00000000 00000000 0000ff00"));
}

TEST(ButtonctlTest, an_answered_ping_prints_the_round_trip) {
  FakeDaemon daemon;
  daemon.answer_pings_with(pong);
  const ToolResult result = run_tool({"-p", number(daemon.port()), "ping"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_THAT(result.output, MatchesRegex("answer from 127.0.0.1 port [0-9]+: [0-9]+\\.[0-9][0-9][0-9] ms\n"));
  EXPECT_EQ(hex(all_received(daemon)), golden("00000004 0000000c"));
}

TEST(ButtonctlTest, several_pings_end_with_a_summary) {
  FakeDaemon daemon;
  daemon.answer_pings_with(pong);
  const ToolResult result = run_tool({"-p", number(daemon.port()), "ping", "--count", "3"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_THAT(result.output, MatchesRegex("(answer from [^\n]* ms\n)(answer from [^\n]* ms\n)(answer from [^\n]* ms\n)"
                                          "3 answers: shortest [0-9.]+ ms, average [0-9.]+ ms, longest [0-9.]+ ms\n"));
  EXPECT_EQ(hex(all_received(daemon)), golden("00000004 0000000c 00000004 0000000c 00000004 0000000c"));
  EXPECT_EQ(daemon.connections(), 1);
}

TEST(ButtonctlTest, pings_are_told_as_json) {
  FakeDaemon daemon;
  daemon.answer_pings_with(pong);
  const ToolResult result = run_tool({"-p", number(daemon.port()), "ping", "--count", "3", "--json"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.errors, "");
  const std::string time = "[0-9]+(\\.[0-9][0-9]?[0-9]?)?";
  EXPECT_THAT(result.output,
              MatchesRegex("\\{\"answered\":3,\"average_ms\":" + time + ",\"host\":\"127.0.0.1\",\"longest_ms\":" +
                           time + ",\"port\":" + std::to_string(daemon.port()) + ",\"round_trips_ms\":\\[" + time +
                           "," + time + "," + time + "\\],\"sent\":3,\"shortest_ms\":" + time + "\\}\n"));
}

TEST(ButtonctlTest, an_unanswered_ping_is_told_as_json_too) {
  FakeDaemon daemon;
  const ToolResult result =
      run_tool({"-p", number(daemon.port()), "--timeout", "500", "ping", "--count", "3", "--json"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, "{\"answered\":0,\"average_ms\":null,\"host\":\"127.0.0.1\",\"longest_ms\":null,\"port\":" +
                               std::to_string(daemon.port()) +
                               ",\"round_trips_ms\":[],\"sent\":1,\"shortest_ms\":null}\n");
  EXPECT_THAT(result.errors, StartsWith("buttonctl: no answer from "));
}

TEST(ButtonctlTest, an_unanswered_ping_fails) {
  FakeDaemon daemon;
  const ToolResult result = run_tool({"-p", number(daemon.port()), "--timeout", "500", "ping"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.errors, MatchesRegex("buttonctl: no answer from 127.0.0.1 port [0-9]+ within 500 ms; allow more "
                                          "time with --timeout, or restart the daemon\n"));
}

TEST(ButtonctlTest, half_an_answer_is_none) {
  FakeDaemon daemon;
  daemon.answer_pings_with(pong.left(7));
  const ToolResult result = run_tool({"-p", number(daemon.port()), "--timeout", "500", "ping"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.errors, StartsWith("buttonctl: no answer from "));
}

TEST(ButtonctlTest, another_answer_than_a_ping_reply_fails) {
  FakeDaemon daemon;
  daemon.answer_pings_with("HTTP/1.1");
  const ToolResult result = run_tool({"-p", number(daemon.port()), "ping"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.errors, MatchesRegex("buttonctl: 127.0.0.1 port [0-9]+ answers a ping with 48 54 54 50 2f 31 2e "
                                          "31, which is no ping reply; is that the daemon\\?\n"));
}

TEST(ButtonctlTest, a_connection_closed_instead_of_an_answer_fails) {
  FakeDaemon daemon;
  daemon.when_received([](QTcpSocket &socket) { socket.disconnectFromHost(); });
  const ToolResult result = run_tool({"-p", number(daemon.port()), "ping"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.errors,
              MatchesRegex("buttonctl: 127.0.0.1 port [0-9]+ closed the connection instead of answering; "
                           "is that the daemon\\?\n"));
}

TEST(ButtonctlTest, a_refused_connection_fails) {
  const RefusingPort nobody;
  const ToolResult result = run_tool({"-p", number(nobody.port()), "blackout"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.errors, MatchesRegex("buttonctl: 127.0.0.1 port [0-9]+ refuses the connection; is the daemon "
                                          "running there\\?\n"));
}

TEST(ButtonctlTest, a_connection_lost_before_all_was_sent_fails) {
  const WorkingFolder folder;
  folder.write("long.txt", "ping --count 1\n" + long_line());
  FakeDaemon daemon;
  daemon.answer_pings_with(pong);
  int times = 0;
  daemon.when_received([&times](QTcpSocket &socket) {
    // The first time is the ping's.
    if (++times == 2)
      socket.abort();
  });
  const ToolResult result = run_tool({"-p", number(daemon.port()), "batch", "long.txt"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.errors, MatchesRegex("buttonctl: long.txt:2: lost the connection to 127.0.0.1 port [0-9]+ before "
                                          "everything was sent; is the daemon still running\\?\n"));
}

TEST(ButtonctlTest, a_message_thrown_away_unread_is_no_success) {
  FakeDaemon daemon;
  daemon.leave_unread();
  daemon.when_received([](QTcpSocket &socket) { socket.abort(); });
  const ToolResult result = run_tool({"-p", number(daemon.port()), "text", "0", "0", "Hi"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.errors, StartsWith("buttonctl: lost the connection to "));
}

TEST(ButtonctlTest, a_daemon_that_takes_no_data_fails) {
  FakeDaemon daemon;
  daemon.leave_unread();
  const ToolResult result = run_tool({"-p", number(daemon.port()), "--timeout", "300", "batch"}, long_line());
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.errors,
              MatchesRegex("buttonctl: standard input:1: 127.0.0.1 port [0-9]+ takes no data for 300 ms; "
                           "allow more time with --timeout\n"));
}

TEST(ButtonctlTest, a_daemon_too_busy_to_close_is_not_waited_for_longer_than_the_timeout) {
  FakeDaemon daemon;
  daemon.leave_unread();
  const ToolResult result = run_tool({"-p", number(daemon.port()), "--timeout", "500", "text", "0", "0", "Hi"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.errors, "");
}

TEST(ButtonctlTest, everything_arrives_though_an_answer_was_left_unread) {
  struct Row {
    const char *last_line;
    int exit_status;
  };
  const Row rows[] = {{"", 0}, {"txet\n", 2}};
  for (const Row &row : rows) {
    constexpr int size = 100000; // more than the daemon's side takes in unread, less than the tool's side holds
    FakeDaemon daemon;
    daemon.leave_unread();
    ToolRun run({"-p", number(daemon.port()), "--timeout", "500", "batch"});
    // The tool is done with the first line when it has taken more of the second than the pipe between holds.
    run.write("raw " + QByteArray(2 * size, '0') + "\n#" + QByteArray(1024 * 1024, '-') + "\n");
    ASSERT_TRUE(wait_until([&run] { return run.unwritten() == 0; }));
    ASSERT_TRUE(wait_until([&daemon] { return daemon.open_connections() == 1; }));
    daemon.write(pong);
    run.write(row.last_line);
    EXPECT_EQ(run.finish().exit_status, row.exit_status);
    daemon.read_on();
    EXPECT_EQ(all_received(daemon).size(), 4 + size);
  }
}

TEST(ButtonctlTest, bad_usage_is_one_line_and_exit_status_2) {
  struct Row {
    QStringList arguments;
    const char *errors;
  };
  const Row rows[] = {
      {{"-n"}, "buttonctl: no command given; see 'buttonctl --help'\n"},
      {{"lde"}, "buttonctl: unknown command 'lde'; did you mean 'led'?\n"},
      {{"--port", "70000", "ping"}, "buttonctl: --port must be a number from 1 to 65535, not '70000'\n"},
      {{"text", "0", "a\nb\x1b[2J", "x"},
       "buttonctl: text: LINE must be a number from 0 to 127, not 'a\\x0ab\\x1b[2J'\n"},
      {{"image", "0", "/no/such.png"}, "buttonctl: image: cannot read '/no/such.png': No such file or directory\n"},
      {{"batch", "/no/such.txt"}, "buttonctl: batch: cannot read '/no/such.txt': No such file or directory\n"},
  };
  for (const Row &row : rows) {
    const ToolResult result = run_tool(row.arguments);
    EXPECT_EQ(result.exit_status, 2) << row.errors;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, row.errors);
  }
}

TEST(ButtonctlTest, help_and_version_go_to_standard_output) {
  struct Row {
    QStringList arguments;
    const char *pattern;
  };
  const Row rows[] = {
      {{"--help"}, "^Usage: buttonctl "},
      {{"-h"}, "^Usage: buttonctl "},
      {{"text", "--help"}, "^Usage: buttonctl .OPTION.\\.\\.\\. text SCREEN LINE TEXT\n"},
      {{"--version"}, "^buttonctl \\(buttondriver\\) [0-9]+\\.[0-9]+\\.[0-9]+\n$"},
  };
  for (const Row &row : rows) {
    const ToolResult result = run_tool(row.arguments);
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, ContainsRegex(row.pattern));
  }
}

TEST(ButtonctlTest, a_picture_can_come_from_standard_input) {
  struct Row {
    QStringList arguments;
    QByteArray input;
    int exit_status;
    std::string output;
    const char *errors;
  };
  const QByteArray raw(120, '\x5A');
  const Row rows[] = {
      {{"image", "0", "-"},
       bmp_2x2(),
       0,
       // 72 bytes of picture, after the message's head.
       golden("0000005c 00000013 00000000 00000000 00000000 00000048") + hex(bmp_2x2()) + "\n",
       ""},
      {{"upload", "4", "-"}, raw, 0, golden("00000084 00000006 00000004 00000078") + hex(raw) + "\n", ""},
      {{"image", "0", "-"},
       "no picture",
       2,
       "",
       "buttonctl: image: 'standard input': not a picture that can be read (neither PNG nor JPEG, BMP or GIF)\n"},
      {{"batch"},
       "image 0 -\n",
       2,
       "",
       "buttonctl: standard input:1: image: cannot read '-': No such file or directory\n"},
  };
  const WorkingFolder folder;
  for (const Row &row : rows) {
    const ToolResult result = run_tool(QStringList{"--dry-run"} + row.arguments, row.input);
    EXPECT_EQ(result.exit_status, row.exit_status);
    EXPECT_EQ(result.output, row.output);
    EXPECT_EQ(result.errors, row.errors);
  }
}

/// Runs the tool with a standard output that nobody reads.
class UnreadRun {
public:
  explicit UnreadRun(const QStringList &arguments) {
    // The shell closes its end when it has started the tool; the tool begins when that is so.
    _process.setProcessChannelMode(QProcess::SeparateChannels);
    _process.start(QStringLiteral("sh"),
                   QStringList{"-c", "{ read -r go; \"$0\" \"$@\"; echo $? >&2; } | { exec <&-; echo closed; }",
                               QStringLiteral(BUTTONCTL)} +
                       arguments);
    EXPECT_TRUE(wait_until([this] { return (_output += _process.readAllStandardOutput()).contains("closed"); }));
    _process.write("go\n");
  }

  /// What the tool has printed on standard error, and after it its status in a shell.
  std::string errors() {
    EXPECT_TRUE(wait_until([this] { return _process.state() == QProcess::NotRunning; }));
    return _process.readAllStandardError().toStdString();
  }

private:
  QProcess _process;
  QByteArray _output;
};

TEST(ButtonctlTest, ends_quietly_when_nobody_reads_its_output) {
  FakeDaemon daemon;
  daemon.answer_pings_with(pong);
  const QStringList endless{"-p", number(daemon.port()), "ping", "--count", "1000000"};
  for (const QStringList &arguments : {QStringList{"--help"}, QStringList{"-n", "blackout"}, endless})
    EXPECT_EQ(UnreadRun(arguments).errors(), "141\n") << arguments.last().toStdString();
}

TEST(ButtonctlTest, a_dry_run_prints_and_connects_nowhere) {
  FakeDaemon daemon;
  const ToolResult result = run_tool({"-n", "-p", number(daemon.port()), "led", "5", "blink", "500"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.output, "000000100000001100000005ffffffff000001f4\n");
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(daemon.connections(), 0);
}

TEST(ButtonctlTest, a_batch_file_goes_over_one_connection) {
  const WorkingFolder folder;
  folder.write("start.txt", "# lights\nled 5 on\n\nled 6 off   # dark\r\nping\nblackout 'all'");
  FakeDaemon daemon;
  daemon.answer_pings_with(pong);
  const ToolResult result = run_tool({"-p", number(daemon.port()), "batch", "start.txt"});
  EXPECT_EQ(result.exit_status, 0) << result.errors;
  EXPECT_EQ(hex(all_received(daemon)), golden("00000010 00000011 00000005 00000001 00000000"
                                              "00000010 00000011 00000006 00000000 00000000"
                                              "00000004 0000000c"
                                              "00000008 00000010 ffffffff"));
  EXPECT_EQ(daemon.connections(), 1);
}

TEST(ButtonctlTest, a_bad_line_of_a_batch_file_is_named_and_nothing_is_sent) {
  const WorkingFolder folder;
  folder.write("start%2.txt", "led 5 on\n\nled 5 up\n");
  FakeDaemon daemon;
  const ToolResult result = run_tool({"-p", number(daemon.port()), "batch", "start%2.txt"});
  EXPECT_EQ(result.exit_status, 2);
  EXPECT_EQ(result.errors, "buttonctl: start%2.txt:3: led: STATE must be 'on', 'off' or 'blink', not 'up'\n");
  EXPECT_EQ(daemon.connections(), 0);
}

TEST(ButtonctlTest, lines_of_standard_input_are_sent_as_they_come) {
  FakeDaemon daemon;
  ToolRun run({"-p", number(daemon.port()), "batch"});
  run.write("blackout 0\n");
  EXPECT_TRUE(wait_until([&daemon] { return daemon.received().size() == 12; }));
  EXPECT_EQ(hex(daemon.received()), golden("00000008 00000010 00000000"));
  run.write("blackout 1\nblackout 9\nblackout 2\n");
  const ToolResult result = run.finish();
  EXPECT_EQ(result.exit_status, 2);
  EXPECT_EQ(result.errors,
            "buttonctl: standard input:3: blackout: SCREEN must be a number from 0 to 2, or 'all', not '9'\n");
  EXPECT_EQ(hex(all_received(daemon)), golden("00000008 00000010 00000000 00000008 00000010 00000001"));
}

} // namespace
} // namespace buttondriver::test
