// SPDX-License-Identifier: Apache-2.0
#include "watched_connection.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>

#include <memory>

using buttondriver::test::MosquittoBroker;
using buttondriver::test::process_events_until;
using testing::ElementsAre;

namespace buttondriver::bridge {
namespace {

class BrokerConnectionTest : public testing::TestWithParam<bool> {
protected:
  BrokerSettings settings(const QByteArray &client_id) const { return settings_for(broker, client_id, GetParam()); }

  MosquittoBroker broker;
};

INSTANTIATE_TEST_SUITE_P(Each, BrokerConnectionTest, testing::Values(true, false),
                         [](const auto &row) { return row.param ? "mqtt_5" : "mqtt_3_1_1"; });

TEST_P(BrokerConnectionTest, all_is_told_from_the_event_loop) {
  WatchedConnection connection;
  ASSERT_TRUE(connection.connection.start(settings("one")));
  EXPECT_FALSE(connection.connection.isConnected());
  EXPECT_EQ(connection.connects, 0);
  EXPECT_FALSE(connection.connection.publish("a", "1", false, 0));
  ASSERT_TRUE(process_events_until([&] { return connection.connects > 0; }));
  EXPECT_TRUE(connection.connection.isConnected());
  EXPECT_TRUE(connection.connection.publish("a", "1", false, 0));
  connection.connection.stop(60'000);
  EXPECT_FALSE(connection.connection.isConnected());
  EXPECT_FALSE(connection.connection.publish("a", "1", false, 0));
  test::process_ready_events();
  EXPECT_EQ(connection.reasons, QStringList());
}

TEST_P(BrokerConnectionTest, a_name_is_looked_up_and_each_of_its_addresses_tried) {
  WatchedConnection connection;
  BrokerSettings settings = this->settings("one");
  settings.host = QStringLiteral("localhost"); // which may mean ::1, where this broker does not listen
  connection.start(settings);
}

TEST_P(BrokerConnectionTest, comes_back_when_the_broker_does) {
  WatchedConnection connection;
  connection.filters = {"a/#"};
  connection.marker_topic = "marker";
  connection.startAndCollect(settings("one"));
  broker.end(SIGKILL);
  ASSERT_TRUE(process_events_until([&] { return connection.reasons.size() >= 3; }));
  EXPECT_EQ(connection.reasons.first().toStdString(), "the broker has closed the connection");
  EXPECT_EQ(connection.lastReason(), "Connection refused");
  EXPECT_EQ(connection.connection.reconnects(), 0U);
  ASSERT_TRUE(broker.start());
  ASSERT_TRUE(process_events_until([&] { return connection.ends == 2; }));
  EXPECT_EQ(connection.connects, 2);
  EXPECT_EQ(connection.connection.reconnects(), 1U);
  WatchedConnection sender;
  sender.start(settings("sender"));
  EXPECT_TRUE(sender.connection.publish("a/b", "1", false, 1));
  ASSERT_TRUE(connection.waitForMessages(1));
  EXPECT_THAT(connection.messages, ElementsAre(Arrival{"a/b", "1", false, false}));
}

/// The library closes its socket when it cannot write. Another one may have its number by the next event.
TEST_P(BrokerConnectionTest, an_end_that_shows_when_something_is_published_is_noticed_at_once) {
  WatchedConnection connection;
  BrokerSettings settings = this->settings("one");
  settings.keep_alive_seconds = 65535; // nothing else tells in time
  connection.start(settings);
  broker.end(SIGKILL);
  for (int i = 0; i < 10; ++i)
    connection.connection.publish("a", "1", false, 1);
  QTcpServer other; // with the number that has become free
  ASSERT_TRUE(other.listen(QHostAddress::LocalHost));
  connection.connection.publish("a", "1", false, 1);
  ASSERT_TRUE(process_events_until([&] { return !connection.reasons.isEmpty(); }));
  EXPECT_FALSE(connection.connection.isConnected());
  QTcpSocket client;
  client.connectToHost(QHostAddress::LocalHost, other.serverPort());
  EXPECT_TRUE(process_events_until([&] { return other.hasPendingConnections(); }));
}

TEST_P(BrokerConnectionTest, nothing_of_a_former_connection_is_sent_later) {
  WatchedConnection sender;
  sender.start(settings("sender"));
  broker.freeze();
  EXPECT_TRUE(sender.connection.publish("a/b", "before", true, 1));
  EXPECT_EQ(sender.connection.waitingMessages(), 1);
  broker.end(SIGKILL);
  ASSERT_TRUE(process_events_until([&] { return !sender.reasons.isEmpty(); }));
  EXPECT_EQ(sender.connection.waitingMessages(), 0);
  ASSERT_TRUE(broker.start());
  WatchedConnection receiver;
  receiver.filters = {"a/#"};
  receiver.marker_topic = "marker";
  receiver.startAndCollect(settings("receiver"));
  ASSERT_TRUE(process_events_until([&] { return sender.connects == 2; }));
  EXPECT_TRUE(sender.connection.publish("a/b", "after", false, 1));
  ASSERT_TRUE(receiver.waitForMessages(1));
  EXPECT_THAT(receiver.messages, ElementsAre(Arrival{"a/b", "after", false, false}));
}

TEST_P(BrokerConnectionTest, the_last_will_is_published_after_a_break_and_not_after_stop) {
  WatchedConnection receiver;
  receiver.filters = {"will/#", "other"};
  receiver.marker_topic = "marker";
  receiver.startAndCollect(settings("receiver"));
  BrokerSettings settings = this->settings("one");
  settings.will_topic = "will/one";
  settings.will_payload = "offline";
  auto connection = std::make_unique<WatchedConnection>();
  connection->start(settings);
  connection.reset();
  ASSERT_TRUE(receiver.waitForMessages(1));

  connection = std::make_unique<WatchedConnection>();
  connection->start(settings);
  connection->connection.stop(60'000);
  ASSERT_TRUE(process_events_until([&] { return broker.log().contains("Client one disconnected."); }));
  WatchedConnection sender;
  sender.start(this->settings("sender"));
  EXPECT_TRUE(sender.connection.publish("other", "1", false, 1));
  ASSERT_TRUE(receiver.waitForMessages(2));
  EXPECT_THAT(receiver.messages,
              ElementsAre(Arrival{"will/one", "offline", GetParam(), false}, Arrival{"other", "1", false, false}));
}

TEST_P(BrokerConnectionTest, stop_waits_until_the_broker_has_what_was_published) {
  constexpr int count = 500;
  {
    WatchedConnection sender;
    sender.start(settings("sender"));
    for (int i = 0; i < count; ++i)
      EXPECT_TRUE(sender.connection.publish("a/" + QByteArray::number(i), QByteArray(1000, 'x'), true, i % 2));
    sender.connection.stop(60'000);
  }
  WatchedConnection receiver;
  receiver.filters = {"a/#"};
  receiver.marker_topic = "marker";
  receiver.startAndCollect(settings("receiver"));
  EXPECT_EQ(receiver.messages.size(), std::size_t{count});
}

TEST_P(BrokerConnectionTest, stop_does_not_wait_longer_than_it_was_told_to) {
  WatchedConnection sender;
  sender.start(settings("sender"));
  broker.freeze();
  EXPECT_TRUE(sender.connection.publish("a", "1", false, 1));
  sender.connection.stop(10);
  EXPECT_FALSE(sender.connection.isConnected());
  broker.thaw();
}

TEST_P(BrokerConnectionTest, can_be_stopped_started_again_and_deleted_in_its_own_signals) {
  WatchedConnection sender;
  sender.start(settings("sender"));
  auto *const connection = new BrokerConnection(short_times(), nullptr);
  int connects = 0;
  bool is_deleted = false;
  QObject::connect(connection, &BrokerConnection::connected, [&] {
    if (++connects == 1) {
      connection->stop(1000);
      EXPECT_TRUE(connection->start(settings("receiver")));
    } else {
      connection->subscribe({"a"});
      connection->askForEnd("marker");
    }
  });
  QObject::connect(connection, &BrokerConnection::everyRetainedHasCome, [&] {
    for (int i = 0; i < 100; ++i)
      EXPECT_TRUE(sender.connection.publish("a", "1", false, 1));
  });
  QObject::connect(connection, &BrokerConnection::messageCame, [&] {
    EXPECT_FALSE(is_deleted);
    is_deleted = true;
    delete connection;
  });
  ASSERT_TRUE(connection->start(settings("receiver")));
  EXPECT_TRUE(process_events_until([&] { return is_deleted; }));
  EXPECT_TRUE(sender.waitUntilSent());
  EXPECT_EQ(connects, 2);
}

} // namespace
} // namespace buttondriver::bridge
