// SPDX-License-Identifier: Apache-2.0
// The daemon itself, as it runs on a machine without the panel's hardware.

#include "files/owned_descriptor.h"
#include "support/event_loop.h"
#include "support/log_pipe.h"
#include "support/program.h"
#include "support/test_root.h"

#include <QHostAddress>
#include <QTcpServer>

#include <gmock/gmock.h>

#include <arpa/inet.h>
#include <chrono>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace buttondriver {
namespace {

using test::Program;
using testing::ElementsAre;

const QString program = QStringLiteral(BUTTONDRIVER_PROGRAM);

TEST(ButtondriverProgramTest, missing_map_file_is_logged_and_ends_it_with_status_1) {
  Program daemon(program, {});
  EXPECT_EQ(daemon.waitForEnd(), 1);
  EXPECT_TRUE(daemon.standardError().endsWith("buttondriver:map file must be specified as first argument!!! \n"));
  EXPECT_EQ(daemon.standardOutput(), "");
}

TEST(ButtondriverProgramTest, serves_clients_without_a_device) {
  Program daemon(program, {QStringLiteral("map"), QString(), QStringLiteral("0")});
  const auto client = daemon.connectTo();
  test::send_frames(*client, "0000000c 00000015 00000001 00000001");
  EXPECT_TRUE(test::answered_ping(*client));
  EXPECT_TRUE(daemon.waitForError("buttondriver: opcode =  21 , size =  12 \n"));
}

TEST(ButtondriverProgramTest, a_port_that_is_no_number_is_any_free_port) {
  Program daemon(program, {QStringLiteral("map"), QString(), QStringLiteral("abc")});
  EXPECT_NE(daemon.listeningPort(), 0);
  // The log may come later than the port.
  EXPECT_TRUE(daemon.waitForOutput("buttondriver:reconfig \n"));
  EXPECT_EQ(daemon.standardOutput(), "buttondriver:reconfig \n");
}

TEST(ButtondriverProgramTest, reads_its_files_from_their_fixed_places) {
  const test::TestRoot root;
  root.writeFontSize(8, 16);
  root.writeLevels("volume 3\n");
  const QString device = root.path() + QStringLiteral("/dev/fpga-reg");
  test::write_file(device, "");
  Program daemon(program, {QStringLiteral("map"), QString(), QStringLiteral("0")}, root.path());
  EXPECT_TRUE(daemon.waitForOutput("buttondriver:reconfig \nbuttondriver:unknown type volume\n"));
  EXPECT_TRUE(daemon.hasOpen(device));
  EXPECT_TRUE(daemon.waitForError("Successfully changed to font  \"/opt/rv1000e/fonts/8x16.pcf.gz\" \n"));
  root.writeFontSize(9, 15);
  EXPECT_TRUE(daemon.waitForError("Successfully changed to font  \"/opt/rv1000e/fonts/9x15.pcf.gz\" \n"));
}

TEST(ButtondriverProgramTest, taken_port_is_logged_and_the_daemon_runs_on) {
  QTcpServer taken;
  ASSERT_TRUE(taken.listen(QHostAddress::Any));
  Program daemon(program, {QStringLiteral("map"), QString(), QString::number(taken.serverPort())});
  EXPECT_TRUE(daemon.waitForOutput("buttondriver:failed to start server\n"));
  // No event tells that it goes on; but its end would be one.
  EXPECT_FALSE(daemon.endsWithin(std::chrono::milliseconds(500)));
}

TEST(ButtondriverProgramTest, gives_its_connections_the_ids_1000_2000_and_so_on) {
  Program daemon(program, {QStringLiteral("map"), QString(), QStringLiteral("0")});
  for (int connection = 1; connection <= 3; ++connection) {
    const auto client = daemon.connectTo();
    client->write(QByteArray::fromHex("00000084 00000006 00000017 00000078") + QByteArray(120, '\x55'));
    ASSERT_TRUE(test::answered_ping(*client));
    // Image 23 is the first that a connection has for itself.
    EXPECT_TRUE(
        daemon.waitForOutput("buttondriver:image uploaded " + QByteArray::number(1000 * connection + 23) + "\n"));
  }
}

TEST(ButtondriverProgramTest, goes_on_when_the_reader_of_its_log_is_gone) {
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

TEST(ButtondriverProgramTest, goes_on_when_the_reader_of_its_log_does_not_read) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  OwnedDescriptor reading_end(ends[0]);
  OwnedDescriptor writing_end(ends[1]);
  const QString redirected = QStringLiteral("exec \"$0\" map '' 0 >&%1 2>&1").arg(writing_end.get());
  Program daemon(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), redirected, program});
  writing_end.reset();
  const auto client = daemon.connectTo();
  // Each byte makes a line: far more than the pipe takes, and so much that commands wait.
  client->write(QByteArray::fromHex("0000f004 00000000") + QByteArray(0xF000, 'x'));
  EXPECT_TRUE(test::answered_ping(*client));
  EXPECT_TRUE(test::answered_ping(*client));
  reading_end.reset();
  EXPECT_TRUE(test::answered_ping(*client));
}

/// The daemon with its log in these pipes, which may be one and the same.
std::unique_ptr<Program> daemon_with_log(const test::LogPipe &output, const test::LogPipe &error) {
  const OwnedDescriptor output_end = output.inheritedWritingEnd();
  const OwnedDescriptor error_end = error.inheritedWritingEnd();
  const QString redirected =
      QStringLiteral("exec \"$0\" map '' 0 >&%1 2>&%2").arg(output_end.get()).arg(error_end.get());
  return std::make_unique<Program>(QStringLiteral("/bin/sh"), QStringList{QStringLiteral("-c"), redirected, program});
}

const char *const status_led = "0000000c 00000015 00000003 00000001";
const std::string logged_status_led = "buttondriver: opcode =  21 , size =  12 \n";

TEST(ButtondriverProgramTest, sixty_four_messages_at_once_cost_one_write_for_each_place_of_the_log) {
  // Pings: what takes the device's time may end a turn earlier, depending on how long that took so far.
  const QByteArray ping = "00000004 0000000c";
  const std::string logged_ping = "buttondriver: opcode =  12 , size =  4 \n";
  for (const bool has_two_places : {true, false}) {
    const test::LogPipe first;
    const test::LogPipe second;
    const auto daemon = daemon_with_log(first, has_two_places ? second : first);
    const auto client = daemon->connectTo();
    ASSERT_TRUE(test::answered_ping(*client));
    EXPECT_NE((has_two_places ? second : first).takeUpTo(logged_ping), "");
    first.takeAll();
    // Reading the levels again prints a line.
    const std::string logged_reconfig = "buttondriver: opcode =  10 , size =  8 \n";
    test::send_frames(*client, ping.repeated(63) + "00000008 0000000a 00000000");
    std::string events;
    for (int i = 0; i < 63; ++i)
      events += logged_ping;
    events += logged_reconfig;
    const std::string printed = "buttondriver:reconfig \n";
    if (has_two_places) {
      EXPECT_THAT(second.takeWritesUpTo(logged_reconfig), ElementsAre(events));
      EXPECT_THAT(first.takeWritesUpTo(printed), ElementsAre(printed));
    } else {
      EXPECT_THAT(first.takeWritesUpTo(printed), ElementsAre(events + printed));
    }
  }
}

TEST(ButtondriverProgramTest, a_reader_of_the_log_that_comes_late_finds_every_line) {
  const test::LogPipe log;
  const auto daemon = daemon_with_log(log, log);
  const auto client = daemon->connectTo();
  ASSERT_TRUE(test::answered_ping(*client));
  constexpr int count = 3000;
  test::send_frames(*client, QByteArray(status_led).repeated(count));
  ASSERT_TRUE(test::answered_ping(*client)) << "nobody waits for the reader";
  // Both pings are over, and their lines come with the others.
  const std::string logged_ping = "buttondriver: opcode =  12 , size =  4 \n";
  std::string all;
  while (all.size() < logged_ping.size() || all.find(logged_ping, all.find(logged_ping) + 1) == std::string::npos)
    all += log.takeUpTo("\n");
  int lines = 0;
  for (std::size_t at = 0; (at = all.find(logged_status_led, at)) != std::string::npos; ++at)
    ++lines;
  EXPECT_EQ(lines, count);
}

TEST(ButtondriverProgramTest, starts_even_when_the_reader_of_its_log_has_gone_already) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  OwnedDescriptor(ends[0]).reset();
  OwnedDescriptor writing_end(ends[1]);
  const QString redirected = QStringLiteral("exec \"$0\" map '' 0 >&%1 2>&1").arg(writing_end.get());
  Program daemon(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), redirected, program});
  writing_end.reset();
  const auto client = daemon.connectTo();
  EXPECT_TRUE(test::answered_ping(*client));
}

TEST(ButtondriverProgramTest, goes_on_when_its_log_cannot_be_written) {
  Program daemon(QStringLiteral("/bin/sh"),
                 {QStringLiteral("-c"), QStringLiteral("exec \"$0\" map '' 0 >/dev/full 2>&1"), program});
  const auto client = daemon.connectTo();
  test::send_frames(*client, "0000000c 00000006 00000001 00000077");
  EXPECT_TRUE(test::answered_ping(*client));
}

TEST(ButtondriverProgramTest, no_environment_variable_acts_on_it) {
  for (const char *variable : {"QT_LOGGING_RULES=*=false", "QT_FATAL_CRITICALS=1", "QT_FATAL_WARNINGS=1",
                               "QT_MESSAGE_PATTERN=other", "QT_LOGGING_TO_CONSOLE=0"}) {
    Program daemon(QStringLiteral("/usr/bin/env"), {QString::fromLatin1(variable), program});
    EXPECT_EQ(daemon.waitForEnd(), 1) << variable;
    EXPECT_TRUE(daemon.standardError().endsWith("buttondriver:map file must be specified as first argument!!! \n"))
        << variable;
  }
}

TEST(ButtondriverProgramTest, a_ping_is_answered_to_a_client_that_has_closed_its_side) {
  Program daemon(program, {QStringLiteral("map"), QString(), QStringLiteral("0")});
  const quint16 port = daemon.listeningPort();
  for (int i = 0; i < 20; ++i) {
    const OwnedDescriptor client(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(::connect(client.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    ASSERT_EQ(::send(client.get(), "\0\0\0\x04\0\0\0\x0c", 8, 0), 8);
    ASSERT_EQ(::shutdown(client.get(), SHUT_WR), 0);
    char answer[16];
    EXPECT_EQ(::recv(client.get(), answer, sizeof answer, MSG_WAITALL), 8) << i;
  }
}

TEST(ButtondriverProgramTest, has_as_many_places_as_its_descriptors_allow_and_serves_again_after_all_were_taken) {
  Program daemon(QStringLiteral("/bin/sh"),
                 {QStringLiteral("-c"), QStringLiteral("ulimit -n 60; exec \"$0\" map '' 0"), program});
  const quint16 port = daemon.listeningPort();
  std::vector<std::unique_ptr<QTcpSocket>> clients;
  int refused = 0;
  for (int i = 0; i < 60; ++i) {
    clients.push_back(std::make_unique<QTcpSocket>());
    clients.back()->connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    ASSERT_TRUE(clients.back()->waitForConnected(20'000));
    refused += test::answered_ping(*clients.back()) ? 0 : 1;
  }
  EXPECT_EQ(refused, 30);
  EXPECT_TRUE(daemon.waitForError("all places for clients are taken, further ones are refused, places 30 \n"));
  EXPECT_TRUE(test::answered_ping(*clients.front()));
  clients.clear();
  // It may hear of them a little later.
  EXPECT_TRUE(test::process_events_until([&] { return test::answered_ping(*daemon.connectTo()); }));
}

TEST(ButtondriverProgramTest, listens_on_every_interface_at_port_3003_by_default) {
  {
    // Taken by this test or by a daemon of the machine: the next one does not get it.
    QTcpServer taken;
    test::process_events_until([&taken] { return taken.listen(QHostAddress::Any, 3003); }, std::chrono::seconds(5));
    Program late(program, {QStringLiteral("map")});
    EXPECT_TRUE(late.waitForOutput("buttondriver:failed to start server\n"));
    if (!taken.isListening())
      GTEST_SKIP() << "port 3003 is in use";
  }
  Program daemon(program, {QStringLiteral("map")});
  EXPECT_EQ(daemon.listeningPort(), 3003);
  for (const char *address : {"127.0.0.1", "127.0.0.2", "::1"}) {
    QTcpServer here;
    if (!here.listen(QHostAddress(QLatin1String(address))))
      continue; // this machine has no IPv6
    QTcpSocket client;
    client.connectToHost(here.serverAddress(), 3003);
    EXPECT_TRUE(client.waitForConnected(20'000)) << address;
  }
}

} // namespace
} // namespace buttondriver
