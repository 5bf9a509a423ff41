// SPDX-License-Identifier: Apache-2.0
// What the unit asks a daemon that was just started, against servers that do what they should not.

#include "packaging/ping_check/ping_check.h"

#include "support/program.h"
#include "support/scripted_peer.h"

#include <gmock/gmock.h>

#include <functional>
#include <thread>

namespace buttondriver {
namespace {

using test::Program;
using test::ScriptedPeer;
using Door = ScriptedPeer::Door;

const std::string ping("\0\0\0\4\0\0\0\14", 8);
const std::string reply("\0\0\0\4\0\0\0\1", 8);
const QString address = QStringLiteral("127.0.0.1");

/// Long enough for every answer, so that only what never comes takes time.
constexpr std::chrono::seconds long_time{20};
constexpr std::chrono::milliseconds short_time{50};

void never_retried() { ADD_FAILURE() << "tried again"; }

std::string fault_at(const ScriptedPeer &peer, std::chrono::milliseconds time,
                     const std::function<void()> &before_retry = never_retried) {
  return fault_of({"127.0.0.1", std::to_string(peer.port()), time}, before_retry);
}

TEST(PingCheckTest, tells_a_daemon_from_everything_else) {
  struct Row {
    std::function<void(ScriptedPeer &)> steps;
    std::chrono::milliseconds time;
    const char *fault;
  };
  const Row rows[] = {
      {[](ScriptedPeer &peer) { peer.write(reply); }, long_time, ""},
      {[](ScriptedPeer &peer) {
         peer.write(reply.substr(0, 3));
         peer.write(reply.substr(3));
       },
       long_time, ""},
      {[](ScriptedPeer &peer) { peer.write("HTTP/1.1 400 Bad Request\r\n"); }, long_time,
       "it is no buttondriver: it answers a ping with 48 54 54 50 2f 31 2e 31"},
      {[](ScriptedPeer &peer) { peer.write(std::string("\0\0\0\4\0\0\0\2", 8)); }, long_time,
       "it is no buttondriver: it answers a ping with 00 00 00 04 00 00 00 02"},
      {[](ScriptedPeer &peer) { peer.hang_up(); }, long_time, "it closes the connection without an answer"},
      {[](ScriptedPeer &peer) {
         peer.write(reply.substr(0, 7));
         peer.hang_up();
       },
       long_time, "it closes the connection without an answer"},
      {[](ScriptedPeer &) {}, short_time, "it accepts connections and does not answer in time"},
      {[](ScriptedPeer &peer) { peer.write(reply.substr(0, 7)); }, short_time,
       "it accepts connections and does not answer in time"},
  };
  for (const Row &row : rows) {
    ScriptedPeer peer;
    std::thread server([&] {
      peer.accept();
      EXPECT_EQ(peer.read(ping.size()), ping);
      row.steps(peer);
    });
    EXPECT_EQ(fault_at(peer, row.time), row.fault);
    server.join();
  }
}

TEST(PingCheckTest, a_server_that_hangs_up_at_once_is_a_fault) {
  ScriptedPeer peer;
  std::thread server([&] {
    peer.accept();
    peer.hang_up();
  });
  EXPECT_THAT(fault_at(peer, long_time), testing::StartsWith("it closes the connection"));
  server.join();
}

TEST(PingCheckTest, tries_again_while_it_is_refused) {
  ScriptedPeer peer(Door::closed);
  std::thread server;
  int retries = 0;
  const std::string fault = fault_at(peer, long_time, [&] {
    if (++retries != 3)
      return;
    peer.open_door();
    server = std::thread([&] {
      peer.accept();
      EXPECT_EQ(peer.read(ping.size()), ping);
      peer.write(reply);
    });
  });
  EXPECT_EQ(fault, "");
  EXPECT_EQ(retries, 3);
  server.join();
}

TEST(PingCheckTest, ends_when_the_time_is_over) {
  const ScriptedPeer nobody(Door::closed);
  int retries = 0;
  EXPECT_EQ(fault_at(nobody, short_time, [&] { ++retries; }), "nothing listens there");
  EXPECT_GT(retries, 0);
  const ScriptedPeer crowded(Door::jammed);
  EXPECT_EQ(fault_at(crowded, short_time), "it cannot be reached: Connection timed out");
}

TEST(PingCheckTest, takes_numbers_only) {
  EXPECT_NE(fault_of({"localhost", "3003", long_time}, never_retried), "");
  EXPECT_NE(fault_of({"127.0.0.1", "http", long_time}, never_retried), "");
}

QString port_of(const ScriptedPeer &peer) { return QString::number(peer.port()); }

TEST(PingCheckProgramTest, ends_with_status_0_once_the_daemon_answers) {
  Program daemon(QStringLiteral(BUTTONDRIVER_PROGRAM), {"no-map-file", QString(), "0"});
  const QString port = QString::number(daemon.listeningPort());
  Program check(QStringLiteral(PING_CHECK_PROGRAM), {address, port, QStringLiteral("20")});
  EXPECT_EQ(check.waitForEnd(), 0);
  EXPECT_EQ(check.standardError(), "");
}

TEST(PingCheckProgramTest, ends_with_status_1_and_a_line_when_nobody_answers) {
  struct Row {
    Door door;
    const char *fault;
  };
  const Row rows[] = {
      {Door::closed, "nothing listens there"},
      {Door::open, "it accepts connections and does not answer in time"},
  };
  for (const Row &row : rows) {
    const ScriptedPeer peer(row.door);
    Program check(QStringLiteral(PING_CHECK_PROGRAM), {address, port_of(peer), QStringLiteral("0.1")});
    EXPECT_EQ(check.waitForEnd(), 1);
    // A journal puts what begins with such a number among the errors.
    const std::string line = "ping-check: no answer from 127.0.0.1 port " + std::to_string(peer.port()) +
                             " within 0.1 s: " + row.fault + "\n";
    EXPECT_THAT(check.standardError().toStdString(), testing::AnyOf(line, "<3>" + line));
  }
}

TEST(PingCheckProgramTest, refuses_other_arguments) {
  const QStringList rows[] = {
      {},
      {address, "3003"},
      {address, "3003", "20", "x"},
      {address, "", "20"},
      {address, "0", "20"},
      {address, "65536", "20"},
      {address, "3003x", "20"},
      {address, "3003", "0"},
      {address, "3003", "-1"},
      {address, "3003", "nan"},
      {address, "3003", "1e9"},
      {address, "3003", "20s"},
  };
  for (const QStringList &row : rows) {
    Program check(QStringLiteral(PING_CHECK_PROGRAM), row);
    EXPECT_EQ(check.waitForEnd(), 2) << row.join(QLatin1Char(' ')).toStdString();
    EXPECT_TRUE(check.standardError().startsWith("usage: ping-check ADDRESS PORT SECONDS\n"));
  }
}

} // namespace
} // namespace buttondriver
