// SPDX-License-Identifier: Apache-2.0
// `buttonctl doctor`: what it prints, and how it ends.

#include "buttonctl/support/fake_daemon.h"
#include "buttonctl/support/tool_run.h"
#include "support/program.h"
#include "support/test_root.h"

#include <gmock/gmock.h>

namespace buttondriver::test {
namespace {

using testing::ContainsRegex;
using testing::MatchesRegex;

class DoctorRunTest : public testing::Test {
protected:
  DoctorRunTest() {
    root.writeFontSize(8, 16);
    root.writeLevels("led 100\nlcd 100\nscr 100\n");
  }

  ToolResult run(quint16 port, const QStringList &options = {}) {
    return run_tool(QStringList{"-p", QString::number(port), "doctor", "--root", root.path()} + options);
  }

  TestRoot root;
};

TEST_F(DoctorRunTest, all_is_well_with_a_virtual_panel) {
  Program simulator(QStringLiteral(BUTTONDRIVER_SIM_PROGRAM),
                    {"--root", root.path(), "--http", "off", "map", QString(), "0"});
  ASSERT_TRUE(simulator.waitForOutput("buttondriver-sim: listening on port "));
  const ToolResult result = run(simulator.listeningPort(), {"--virtual"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_THAT(result.output,
              MatchesRegex("ok     configuration: [^\n]*/etc/rv1000e/launcher.cfg asks for a font of 8x16\n"
                           "ok     font: [^\n]*/opt/rv1000e/fonts/8x16.pcf.gz; sizes there: [0-9x ]+\n"
                           "ok     levels: [^\n]*/etc/rv1000e/buttonlevel\n"
                           "ok     daemon: 127.0.0.1 port [0-9]+ answers in [0-9.]+ ms\n"));
}

TEST_F(DoctorRunTest, a_missing_device_is_a_fault) {
  FakeDaemon daemon;
  daemon.answer_pings_with(QByteArray::fromHex("0000000400000001"));
  const ToolResult result = run(daemon.port());
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.output, ContainsRegex("\nFAULT  device: there is no device node [^\n]*/dev/fpga-reg; [^\n]+\n"
                                           "       fix: udevadm "));
}

TEST_F(DoctorRunTest, a_closed_port_is_a_daemon_that_does_not_listen) {
  const RefusingPort nobody;
  const ToolResult result = run(nobody.port(), {"--virtual"});
  EXPECT_EQ(result.exit_status, 1);
  const std::string port = std::to_string(nobody.port());
  EXPECT_THAT(result.output, ContainsRegex("\nFAULT  daemon: nothing listens on 127.0.0.1 port " + port +
                                           "\n       fix: buttondriver-sim --root " + root.path().toStdString() +
                                           " map '' " + port + " &\n$"));
}

TEST_F(DoctorRunTest, something_that_answers_no_ping_is_not_the_daemon) {
  struct Row {
    QByteArray answer;
    const char *pattern;
  };
  const Row rows[] = {
      {"", "no answer from 127.0.0.1 port [0-9]+ within 100 ms"},
      {"HTTP/1.1 400 Bad Request\r\n", "answers a ping with 48 54 54 50 2f 31 2e 31, which is no ping reply"},
  };
  for (const Row &row : rows) {
    FakeDaemon other;
    other.answer_pings_with(row.answer);
    const ToolResult result = run(other.port(), {"--virtual", "--timeout", row.answer.isEmpty() ? "100" : "10000"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_THAT(
        result.output,
        ContainsRegex("\nFAULT  daemon: something listens on 127.0.0.1 port [0-9]+ but it is not the daemon, or "
                      "it hangs: [^\n]*" +
                      std::string(row.pattern) + "[^\n]*\n       fix: ss -ltnp | grep buttondriver "));
  }
}

TEST_F(DoctorRunTest, a_user_that_is_not_known_is_bad_usage) {
  const ToolResult result = run(1, {"--virtual", "--user", "nobody-here"});
  EXPECT_EQ(result.exit_status, 2);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.errors, MatchesRegex("buttonctl: doctor: there is no user 'nobody-here' in [^\n]*/etc/passwd\n"));
}

TEST_F(DoctorRunTest, every_fault_is_told_at_once) {
  root.writeFontSize(9, 17);
  root.writeLevels("scr 200\n");
  const RefusingPort nobody;
  const ToolResult result = run(nobody.port());
  EXPECT_EQ(result.exit_status, 1);
  for (const char *name : {"font", "levels", "device", "daemon"})
    EXPECT_THAT(result.output, ContainsRegex("\nFAULT  " + std::string(name) + ": "));
}

} // namespace
} // namespace buttondriver::test
