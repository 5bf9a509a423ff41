// The daemon itself, as it runs on a machine without the panel's hardware.

#include "support/program.h"

#include <QTcpServer>

#include <gtest/gtest.h>

#include <unistd.h>

namespace buttondriver {
namespace {

using test::Program;

const QString program = QStringLiteral(BUTTONDRIVER_PROGRAM);

TEST(ButtondriverProgram, without_a_map_file_it_says_so_and_exits_with_1) {
  Program daemon(program, {});
  EXPECT_EQ(daemon.waitForEnd(), 1);
  EXPECT_TRUE(daemon.standardError().endsWith("buttondriver:map file must be specified as first argument!!! \n"));
  EXPECT_EQ(daemon.standardOutput(), "");
}

TEST(ButtondriverProgram, without_a_device_it_serves_clients_all_the_same) {
  Program daemon(program, {QStringLiteral("map"), QString(), QStringLiteral("0")});
  const auto client = daemon.connectTo();
  test::send_frames(*client, "0000000c 00000015 00000001 00000001");
  EXPECT_TRUE(test::answered_ping(*client));
  EXPECT_TRUE(daemon.waitForError("buttondriver: opcode =  21 , size =  12 \n"));
}

TEST(ButtondriverProgram, a_port_that_is_no_number_is_any_free_port) {
  Program daemon(program, {QStringLiteral("map"), QString(), QStringLiteral("abc")});
  EXPECT_NE(daemon.listeningPort(), 0);
  EXPECT_EQ(daemon.standardOutput(), "buttondriver:reconfig \n");
}

TEST(ButtondriverProgram, a_taken_port_is_said_and_the_daemon_runs_on) {
  QTcpServer taken;
  ASSERT_TRUE(taken.listen(QHostAddress::Any));
  Program daemon(program, {QStringLiteral("map"), QString(), QString::number(taken.serverPort())});
  EXPECT_TRUE(daemon.waitForOutput("buttondriver:failed to start server\n"));
  EXPECT_TRUE(daemon.isRunning());
}

TEST(ButtondriverProgram, goes_on_when_nobody_reads_its_log_any_more) {
  Program daemon(program, {QStringLiteral("map"), QString(), QStringLiteral("0")});
  const auto client = daemon.connectTo();
  ASSERT_TRUE(test::answered_ping(*client));
  daemon.stopReading();
  // Both logs get a line: a message for standard error, a refused upload for standard output.
  test::send_frames(*client, "0000000c 00000006 00000001 00000077");
  EXPECT_TRUE(test::answered_ping(*client));
  EXPECT_TRUE(test::answered_ping(*client));
  EXPECT_TRUE(daemon.isRunning());
}

TEST(ButtondriverProgram, starts_even_when_the_reader_of_its_log_has_gone_already) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  ::close(ends[0]);
  const QString redirected = QStringLiteral("exec \"$0\" map '' 0 >&%1 2>&1").arg(ends[1]);
  Program daemon(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), redirected, program});
  ::close(ends[1]);
  const auto client = daemon.connectTo();
  EXPECT_TRUE(test::answered_ping(*client));
}

TEST(ButtondriverProgram, goes_on_when_its_log_cannot_be_written) {
  Program daemon(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QStringLiteral("exec \"$0\" map '' 0 >/dev/full 2>&1"),
                                             program});
  const auto client = daemon.connectTo();
  test::send_frames(*client, "0000000c 00000006 00000001 00000077");
  EXPECT_TRUE(test::answered_ping(*client));
}

TEST(ButtondriverProgram, listens_on_port_3003_by_default) {
  {
    QTcpServer probe;
    if (!probe.listen(QHostAddress::Any, 3003))
      GTEST_SKIP() << "port 3003 is in use";
  }
  Program daemon(program, {QStringLiteral("map")});
  EXPECT_EQ(daemon.listeningPort(), 3003);
}

} // namespace
} // namespace buttondriver
