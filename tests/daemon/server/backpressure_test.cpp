// SPDX-License-Identifier: Apache-2.0
// What clients can make the server hold, and how they wait for each other.

#include "daemon/server/remembering_setter.h"
#include "server/client_buttondriver.h"
#include "server/connector.h"
#include "server/limits.h"
#include "support/captured_log.h"
#include "support/event_loop.h"

#include <QHostAddress>
#include <QTcpSocket>

#include <gmock/gmock.h>
#include <sys/socket.h>

#include <filesystem>
#include <iterator>
#include <memory>

namespace buttondriver {
namespace {

using test::process_events_until;
using testing::Contains;
using testing::HasSubstr;

const QByteArray ping = QByteArray::fromHex("0000000c");

QByteArray frame(const QByteArray &message) {
  return QByteArray::fromHex(QByteArray::number(static_cast<int>(message.size()), 16).rightJustified(8, '0')) + message;
}

class BackpressureTest : public testing::Test {
protected:
  BackpressureTest() { EXPECT_TRUE(connector.listen()); }

  std::unique_ptr<QTcpSocket> connectClient() {
    const std::size_t before = connector.clients().size();
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QHostAddress::LocalHost, connector.port());
    EXPECT_TRUE(process_events_until(
        [&] { return connector.clients().size() > before && socket->state() == QAbstractSocket::ConnectedState; }));
    return socket;
  }

  /// Messages delivered so far.
  std::size_t delivered() const {
    std::size_t count = 0;
    for (const auto &call : setter.calls)
      count += call.messages.size();
    return count;
  }

  /// What all sockets of the server hold for their clients.
  qint64 held() const {
    qint64 bytes = 0;
    for (const ClientButtondriver *client : connector.clients())
      bytes += client->findChild<QTcpSocket *>()->bytesAvailable();
    return bytes;
  }

  test::CapturedLog log;
  test::RememberingSetter setter;
  Connector connector{QString(), 0, &setter};
};

TEST_F(BackpressureTest, a_turn_is_at_most_64_messages) {
  const auto client = connectClient();
  QByteArray burst;
  for (int i = 0; i < 1000; ++i)
    burst += frame("some message");
  client->write(burst);
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1000; }));
  for (const auto &call : setter.calls)
    EXPECT_LE(call.messages.size(), limits::messages_per_turn);
}

TEST_F(BackpressureTest, nothing_is_lost_or_reordered_across_pauses_whatever_the_frame_size) {
  // Odd sizes make the read-ahead end inside a frame.
  for (const int size : {7, 1001, 40'003}) {
    setter.calls.clear();
    const auto client = connectClient();
    const int count = 3'000'000 / size;
    for (int i = 0; i < count; ++i)
      client->write(frame(QByteArray::number(i).rightJustified(size, '.')));
    int pauses = 0;
    while (delivered() < static_cast<std::size_t>(count)) {
      const std::size_t before = delivered();
      connector.pauseReading();
      ++pauses;
      for (int round = 0; round < 3; ++round)
        QCoreApplication::processEvents();
      EXPECT_LE(held(), limits::read_ahead);
      EXPECT_EQ(delivered(), before);
      connector.resumeReading();
      ASSERT_TRUE(process_events_until([&] { return delivered() > before; })) << "stalled at " << before;
    }
    EXPECT_GT(pauses, 1);
    int expected = 0;
    for (const QByteArray &message : setter.messages())
      ASSERT_EQ(message, QByteArray::number(expected++).rightJustified(size, '.'));
    client->abort();
    ASSERT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  }
}

TEST_F(BackpressureTest, pings_are_answered_while_paused_and_stay_in_order) {
  const auto flooding = connectClient();
  const auto pinging = connectClient();
  connector.pauseReading();
  flooding->write(frame(ping) + frame("work") + frame(ping));
  for (int i = 0; i < 200; ++i)
    pinging->write(frame(ping));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 201; }));
  for (const QByteArray &message : setter.messages())
    EXPECT_EQ(message, ping);
  connector.resumeReading();
  ASSERT_TRUE(process_events_until([&] { return delivered() == 203; }));
  EXPECT_EQ(setter.messages()[201], "work");
  EXPECT_EQ(setter.messages()[202], ping);
}

TEST_F(BackpressureTest, connections_take_turns) {
  const auto flooding = connectClient();
  const auto other = connectClient();
  QByteArray flood;
  for (int i = 0; i < 20'000; ++i)
    flood += frame("flood");
  flooding->write(flood);
  ASSERT_TRUE(process_events_until([&] { return delivered() > 0; }));
  other->write(frame("other"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 20'001; }));
  const std::vector<QByteArray> messages = setter.messages();
  const auto place = std::find(messages.begin(), messages.end(), "other") - messages.begin();
  EXPECT_LT(place, 5'000); // one read-ahead holds 7,281 of them
}

TEST_F(BackpressureTest, what_came_before_a_disconnection_is_delivered_after_the_pause) {
  const auto client = connectClient();
  connector.pauseReading();
  for (int i = 0; i < 100; ++i)
    client->write(frame("work"));
  client->disconnectFromHost();
  process_events_until([] { return false; }, std::chrono::milliseconds(50));
  EXPECT_EQ(delivered(), 0U);
  connector.resumeReading();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  EXPECT_EQ(delivered(), 100U);
}

TEST_F(BackpressureTest, all_messages_of_a_client_that_closes_its_side_are_answered_turns_and_pauses_or_not) {
  setter.answer = "a";
  setter.when_called = [this] {
    if (setter.calls.size() == 2)
      connector.pauseReading();
  };
  const auto client = connectClient();
  for (int i = 0; i < 300; ++i)
    client->write(frame("work"));
  ASSERT_TRUE(process_events_until([&] { return client->bytesToWrite() == 0; }));
  ::shutdown(static_cast<int>(client->socketDescriptor()), SHUT_WR);
  process_events_until([] { return false; }, std::chrono::milliseconds(50));
  EXPECT_EQ(delivered(), 2 * limits::messages_per_turn);
  connector.resumeReading();
  EXPECT_TRUE(process_events_until([&] { return client->bytesAvailable() == 300; })) << client->bytesAvailable();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
}

TEST_F(BackpressureTest, a_client_that_is_held_gets_pings_answered_and_others_everything) {
  const auto held = connectClient();
  connector.holdClient(connector.clients().front()->clientId());
  const auto other = connectClient();
  held->write(frame(ping) + frame("held") + frame(ping));
  other->write(frame("other"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 2; }));
  process_events_until([] { return false; }, std::chrono::milliseconds(20));
  EXPECT_THAT(setter.messages(), testing::UnorderedElementsAre(ping, "other"));
  connector.pauseReading();
  connector.resumeReading();
  process_events_until([] { return false; }, std::chrono::milliseconds(20));
  EXPECT_EQ(delivered(), 2U) << "a pause that ends releases nobody";
  connector.releaseClients();
  EXPECT_TRUE(process_events_until([&] { return delivered() == 4; }));
}

TEST_F(BackpressureTest, while_all_clients_are_held_so_are_those_that_come) {
  const auto first = connectClient();
  connector.holdAllClients();
  const auto second = connectClient();
  for (const auto *client : {&first, &second})
    (*client)->write(frame(ping) + frame("held"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 2; }));
  process_events_until([] { return false; }, std::chrono::milliseconds(20));
  EXPECT_THAT(setter.messages(), testing::ElementsAre(ping, ping));
  connector.releaseClients();
  EXPECT_TRUE(process_events_until([&] { return delivered() == 4; }));
  const auto third = connectClient();
  third->write(frame("free"));
  EXPECT_TRUE(process_events_until([&] { return delivered() == 5; }));
}

TEST_F(BackpressureTest, a_frame_of_16_mib_passes_and_a_longer_one_blocks_its_connection_for_good) {
  const auto client = connectClient();
  const QByteArray largest(limits::largest_frame, 'x');
  client->write(frame(largest) + frame("behind it"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 2; }, std::chrono::seconds(60)));
  EXPECT_EQ(setter.messages()[0].size(), largest.size());

  setter.calls.clear();
  client->write(QByteArray::fromHex("01000001"));
  for (int i = 0; i < 32; ++i)
    client->write(QByteArray(1024 * 1024, 'y'));
  client->write(frame("never delivered"));
  ASSERT_TRUE(process_events_until(
      [&] {
        EXPECT_LE(held(), limits::read_ahead);
        return client->bytesToWrite() == 0;
      },
      std::chrono::seconds(60)));
  const auto other = connectClient();
  other->write(frame("from another"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1; }));
  EXPECT_EQ(setter.messages()[0], "from another");
  const std::vector<std::string> lines = log.take();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string &line) { return line.find("frame too large") != std::string::npos; }),
            1);
  EXPECT_THAT(lines, Contains(HasSubstr("size 16777217 ")));
  client->abort();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().size() == 1; }));
}

TEST_F(BackpressureTest, large_frames_share_a_budget_and_wait_for_each_other) {
  std::vector<std::unique_ptr<QTcpSocket>> holders;
  // Each announces nearly 16 MiB and sends a little of it: four of them use the budget up.
  for (int i = 0; i < 4; ++i) {
    holders.push_back(connectClient());
    holders.back()->write(QByteArray::fromHex("00fffff0") + QByteArray(1000, 'h'));
  }
  const auto waiting = connectClient();
  const QByteArray large(200'000, 'w');
  ASSERT_TRUE(process_events_until([&] { return held() >= 4 * 1004; }));
  waiting->write(frame(large));
  // Small messages of others pass all the same.
  const auto small = connectClient();
  small->write(frame("small"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1; }));
  ASSERT_TRUE(process_events_until([&] { return held() >= 4 * 1004 + limits::read_ahead; }));
  EXPECT_EQ(delivered(), 1U);
  holders.pop_back();
  ASSERT_TRUE(process_events_until([&] { return delivered() == 2; }));
  EXPECT_EQ(setter.messages()[1], large);
}

TEST_F(BackpressureTest, a_client_that_does_not_read_its_answers_is_not_read_from) {
  setter.answer = QByteArray(100'000, 'a');
  const auto client = connectClient();
  client->setReadBufferSize(1); // leaves the answers with the system, and soon with the server
  QByteArray pings;
  for (int i = 0; i < 2000; ++i)
    pings += frame(ping);
  client->write(pings);
  const auto server_side = connector.clients().front()->findChild<QTcpSocket *>();
  ASSERT_TRUE(process_events_until([&] { return server_side->bytesToWrite() > limits::unread_answers; }));
  const std::size_t stopped_at = delivered();
  EXPECT_LT(stopped_at, 2000U);
  const auto turns_answers = static_cast<qint64>(limits::messages_per_turn) * setter.answer.size();
  EXPECT_LE(server_side->bytesToWrite(), limits::unread_answers + turns_answers);
  // Others are served meanwhile, and nothing more of this one is.
  setter.answer.clear();
  const auto other = connectClient();
  other->write(frame("other"));
  ASSERT_TRUE(process_events_until([&] { return delivered() > stopped_at; }));
  EXPECT_EQ(delivered(), stopped_at + 1);
  client->setReadBufferSize(0);
  ASSERT_TRUE(process_events_until([&] {
    client->readAll();
    return delivered() == 2001;
  }));
}

/// Ends the connection by a reset instead of an orderly close.
void reset(QTcpSocket &socket) {
  const linger at_once{1, 0};
  ASSERT_EQ(::setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once),
            0);
  socket.abort();
}

TEST_F(BackpressureTest, a_client_that_resets_its_connection_before_it_is_answered_is_forgotten) {
  setter.answer = "answer";
  struct Row {
    const char *name;
    QByteArray sent;
    bool is_accepted_first;
    std::size_t delivered;
  };
  const QByteArray many = frame(ping).repeated(200);
  const Row rows[] = {
      {"nothing behind the last frame", frame(ping), true, 1},
      {"half a frame behind it", frame(ping) + frame(ping).left(6), true, 1},
      {"more than one turn", many + "xx", true, 200},
      {"reset before it was accepted", frame(ping), false, 1},
      {"half a frame, reset before it was accepted", frame(ping) + frame(ping).left(6), false, 1},
      {"more than one turn, reset before it was accepted", many + "xx", false, 200},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.name);
    setter.calls.clear();
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, connector.port());
    ASSERT_TRUE(client.waitForConnected(10'000));
    if (row.is_accepted_first) {
      ASSERT_TRUE(process_events_until([&] { return !connector.clients().empty(); }));
    }
    client.write(row.sent);
    ASSERT_TRUE(client.waitForBytesWritten(10'000));
    reset(client);
    ASSERT_TRUE(process_events_until([&] { return delivered() == row.delivered && connector.clients().empty(); }))
        << "delivered " << delivered();
    for (const auto &call : setter.calls)
      EXPECT_LE(call.messages.size(), limits::messages_per_turn);
  }
}

TEST_F(BackpressureTest, what_a_reset_leaves_behind_waits_for_the_end_of_a_pause) {
  setter.answer = "answer";
  setter.when_called = [this] { connector.pauseReading(); };
  const auto client = connectClient();
  client->write(frame("work").repeated(200));
  ASSERT_TRUE(client->waitForBytesWritten(10'000));
  reset(*client);
  ASSERT_TRUE(process_events_until([&] { return delivered() > 0; }));
  process_events_until([] { return false; }, std::chrono::milliseconds(50));
  EXPECT_EQ(delivered(), limits::messages_per_turn);
  EXPECT_EQ(connector.clients().size(), 1U);
  setter.when_called = {};
  connector.resumeReading();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  EXPECT_EQ(delivered(), 200U);
}

TEST_F(BackpressureTest, nobody_is_accepted_while_paused) {
  connector.pauseReading();
  QTcpSocket waiting;
  waiting.connectToHost(QHostAddress::LocalHost, connector.port());
  ASSERT_TRUE(process_events_until([&] { return waiting.state() == QAbstractSocket::ConnectedState; }));
  waiting.write(frame("patience"));
  process_events_until([] { return false; }, std::chrono::milliseconds(50));
  EXPECT_TRUE(connector.clients().empty());
  connector.resumeReading();
  EXPECT_TRUE(process_events_until([&] { return delivered() == 1; }));
}

TEST_F(BackpressureTest, clients_beyond_the_limit_wait_until_others_end) {
  std::vector<std::unique_ptr<QTcpSocket>> sockets;
  for (std::size_t i = 0; i < limits::connections + 5; ++i) {
    sockets.push_back(std::make_unique<QTcpSocket>());
    sockets.back()->connectToHost(QHostAddress::LocalHost, connector.port());
    if (!process_events_until([&] { return sockets.back()->state() == QAbstractSocket::ConnectedState; }))
      GTEST_SKIP() << "not enough descriptors for this test";
    process_events_until([&] { return connector.clients().size() > i; },
                         std::chrono::milliseconds(i < 850 ? 1000 : 20));
  }
  EXPECT_EQ(connector.clients().size(), limits::connections);
  // Of those that wait one has something to say, one gives up, and one has said something and gives up.
  sockets[limits::connections]->write(frame("patience"));
  sockets[limits::connections + 1]->abort();
  sockets[limits::connections + 2]->write(frame("patience"));
  process_events_until([&] { return sockets[limits::connections + 2]->bytesToWrite() == 0; });
  sockets[limits::connections + 2]->abort();
  process_events_until([] { return false; }, std::chrono::milliseconds(20));
  EXPECT_EQ(delivered(), 0U);
  for (std::size_t i = 0; i < 100; ++i)
    sockets[i]->abort();
  EXPECT_TRUE(process_events_until([&] { return delivered() == 2; }));
  EXPECT_TRUE(process_events_until([&] { return connector.clients().size() == limits::connections + 3 - 100; }));
  sockets.clear();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
}

std::ptrdiff_t open_descriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return std::distance(begin(entries), end(entries));
}

TEST_F(BackpressureTest, ten_thousand_connections_leave_nothing_behind) {
  const auto children = connector.children().size();
  const auto descriptors = open_descriptors();
  for (int i = 0; i < 10'000; ++i) {
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, connector.port());
    ASSERT_TRUE(client.waitForConnected(10'000));
    client.write(frame(ping));
    ASSERT_TRUE(client.waitForBytesWritten(10'000));
    client.abort();
    QCoreApplication::processEvents();
    log.take();
    setter.calls.clear();
  }
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  EXPECT_TRUE(process_events_until([&] { return connector.children().size() == children; }));
  EXPECT_EQ(open_descriptors(), descriptors);
}

} // namespace
} // namespace buttondriver
