// SPDX-License-Identifier: Apache-2.0
// What becomes of a connection that ends, and of what its client sent before.

#include "daemon/server/server_fixture.h"
#include "server/limits.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMetaObject>

#include <sys/ioctl.h>

#include <filesystem>
#include <iterator>
#include <vector>

namespace buttondriver {
namespace {

using test::frame;
using test::ping;
using test::process_events_until;
using test::reset;

class ConnectionEndTest : public test::ServerFixture {};

TEST_F(ConnectionEndTest, what_came_before_a_disconnection_is_delivered_after_the_pause) {
  const auto client = connectClient();
  connector.pauseReading();
  for (int i = 0; i < 100; ++i)
    client->write(frame("work"));
  client->disconnectFromHost();
  ASSERT_TRUE(process_events_until([&] { return client->state() == QAbstractSocket::UnconnectedState && held() > 0; }));
  settle();
  EXPECT_EQ(delivered(), 0U);
  connector.resumeReading();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  EXPECT_EQ(delivered(), 100U);
}

TEST_F(ConnectionEndTest, all_messages_of_a_client_that_closes_its_side_are_answered_turns_and_pauses_or_not) {
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
  ASSERT_TRUE(process_events_until([&] { return delivered() >= 2 * limits::messages_per_turn; }));
  settle();
  EXPECT_EQ(delivered(), 2 * limits::messages_per_turn);
  connector.resumeReading();
  EXPECT_TRUE(process_events_until([&] { return client->bytesAvailable() == 300; })) << client->bytesAvailable();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
}

TEST_F(ConnectionEndTest, a_client_that_resets_its_connection_before_it_is_answered_is_forgotten) {
  setter.answer = "answer";
  struct Row {
    const char *name;
    QByteArray sent;
    bool is_accepted_first;
    std::size_t delivered;
  };
  const QByteArray many = frame(ping).repeated(200);
  const Row rows[] = {
      {"nothing after the last frame", frame(ping), true, 1},
      {"half a frame after it", frame(ping) + frame(ping).left(6), true, 1},
      {"more than one turn", many + "xx", true, 200},
      {"reset before it was accepted", frame(ping), false, 1},
      {"half a frame, reset before it was accepted", frame(ping) + frame(ping).left(6), false, 1},
      {"more than one turn, reset before it was accepted", many + "xx", false, 200},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.name);
    setter.forget();
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

TEST_F(ConnectionEndTest, what_the_system_has_of_a_client_that_left_without_reading_is_carried_out) {
  setter.answer = "answer";
  constexpr std::size_t count = 8'000; // more than is read ahead, and less than the system holds
  const auto client = connectClient();
  client->setReadBufferSize(1); // it never reads its answers, so that its end is a reset
  client->write(frame(ping) + frame("some work").repeated(static_cast<int>(count)));
  while (client->bytesToWrite() > 0 && client->waitForBytesWritten(10'000)) {
  }
  // All has arrived at the server's side of the system; the server itself has not come by yet.
  int on_its_way = 1;
  while (on_its_way > 0)
    ASSERT_EQ(::ioctl(static_cast<int>(client->socketDescriptor()), TIOCOUTQ, &on_its_way), 0);
  client->abort();
  ASSERT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  EXPECT_EQ(delivered(), count + 1);
}

TEST_F(ConnectionEndTest, what_a_reset_leaves_behind_waits_for_the_end_of_a_pause) {
  setter.answer = "answer";
  setter.when_called = [this] { connector.pauseReading(); };
  const auto client = connectClient();
  client->write(frame("work").repeated(200));
  ASSERT_TRUE(client->waitForBytesWritten(10'000));
  reset(*client);
  ASSERT_TRUE(process_events_until([&] { return delivered() > 0; }));
  settle();
  EXPECT_EQ(delivered(), limits::messages_per_turn);
  EXPECT_EQ(connector.clients().size(), 1U);
  setter.when_called = {};
  connector.resumeReading();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  EXPECT_EQ(delivered(), 200U);
}

TEST_F(ConnectionEndTest, a_connection_that_ends_while_it_is_in_the_line_gets_no_turn) {
  for (const bool does_everybody_wait : {false, true}) {
    SCOPED_TRACE(does_everybody_wait);
    const auto first = connectClient();
    const auto second = connectClient();
    if (does_everybody_wait)
      connector.pauseReading();
    connector.releaseNullMessages(); // all join the line
    ASSERT_TRUE(QMetaObject::invokeMethod(connector.clients().front(), "clientDisconnected"));
    // By the time of its turn it would be deleted.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    connector.resumeReading();
    settle();
    EXPECT_EQ(connector.clients().size(), 1U);
    second->abort();
    ASSERT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  }
}

TEST_F(ConnectionEndTest, what_came_before_the_end_of_a_held_client_is_delivered_when_it_is_released) {
  std::vector<qint32> gone;
  QObject::connect(&connector, &Connector::clientGone, [&](qint32 client_id) { gone.push_back(client_id); });
  setter.answer = "answer";
  for (const bool is_reset : {false, true}) {
    SCOPED_TRACE(is_reset);
    setter.forget();
    gone.clear();
    const auto client = connectClient();
    const qint32 id = connector.clients().front()->clientId();
    connector.holdClient(id);
    client->write(frame(ping) + frame("work").repeated(100) + "xx");
    ASSERT_TRUE(client->waitForBytesWritten(10'000));
    ASSERT_TRUE(process_events_until([&] { return held() > 0; }));
    if (is_reset)
      reset(*client);
    else
      client->disconnectFromHost();
    settle();
    EXPECT_EQ(delivered(), 0U);
    EXPECT_EQ(connector.clients().size(), 1U);
    EXPECT_TRUE(gone.empty());
    connector.releaseClient(id);
    EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
    EXPECT_EQ(delivered(), 101U);
    EXPECT_EQ(gone, std::vector<qint32>{id});
  }
}

TEST_F(ConnectionEndTest, a_client_that_was_held_holds_nobody_after_its_end) {
  // A new connection may have the address of one that was deleted.
  for (int i = 0; i < 50; ++i) {
    setter.forget();
    const auto client = connectClient();
    client->write(frame("work"));
    ASSERT_TRUE(process_events_until([&] { return delivered() == 1; })) << i;
    connector.holdClient(connector.clients().front()->clientId());
    client->abort();
    ASSERT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  }
}

std::ptrdiff_t open_descriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return std::distance(begin(entries), end(entries));
}

TEST_F(ConnectionEndTest, ten_thousand_connections_leave_nothing_behind) {
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
    setter.forget();
  }
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  EXPECT_TRUE(process_events_until([&] { return connector.children().size() == children; }));
  EXPECT_EQ(open_descriptors(), descriptors);
}

} // namespace
} // namespace buttondriver
