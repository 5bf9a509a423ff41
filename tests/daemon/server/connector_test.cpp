// SPDX-License-Identifier: Apache-2.0
#include "server/connector.h"

#include "daemon/server/server_fixture.h"
#include "server/listener.h"

#include <QSocketNotifier>

#include <gmock/gmock.h>

#include <string>

namespace buttondriver {
namespace {

using test::process_events_until;
using testing::ElementsAre;

class ConnectorTest : public test::ServerFixture {
protected:
  bool delivers(std::size_t count) {
    return process_events_until([&] { return delivered() >= count; });
  }
};

TEST_F(ConnectorTest, two_frames_in_one_read_are_one_call) {
  const auto client = connectClient();
  client->write(QByteArray::fromHex("00000004 0000000c 00000002 abcd"));
  ASSERT_TRUE(delivers(2));
  ASSERT_EQ(setter.calls.size(), 1U);
  EXPECT_THAT(setter.calls[0].messages, ElementsAre(QByteArray::fromHex("0000000c"), QByteArray::fromHex("abcd")));
}

TEST_F(ConnectorTest, a_frame_is_delivered_by_the_read_that_completes_it) {
  const auto client = connectClient();
  const QByteArray frame = QByteArray::fromHex("00000004 0000000c");
  for (int i = 0; i < frame.size(); ++i) {
    const std::size_t calls = setter.calls.size();
    EXPECT_TRUE(setter.messages().empty()) << i;
    client->write(frame.mid(i, 1));
    ASSERT_TRUE(process_events_until([&] { return setter.calls.size() > calls; }));
  }
  EXPECT_THAT(setter.messages(), ElementsAre(QByteArray::fromHex("0000000c")));
}

TEST_F(ConnectorTest, an_empty_frame_is_an_empty_message) {
  const auto client = connectClient();
  client->write(QByteArray::fromHex("00000000"));
  ASSERT_TRUE(delivers(1));
  EXPECT_THAT(setter.messages(), ElementsAre(QByteArray()));
}

TEST_F(ConnectorTest, what_arrives_just_before_the_end_is_still_delivered) {
  const auto client = connectClient();
  client->write(QByteArray::fromHex("00000001 aa 00000001 bb 00000009 cc"));
  client->disconnectFromHost();
  ASSERT_TRUE(delivers(2));
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  EXPECT_EQ(setter.messages().size(), 2U);
}

TEST_F(ConnectorTest, all_who_come_are_accepted_however_many_at_once) {
  for (int round = 0; round < 50; ++round) {
    std::vector<std::unique_ptr<QTcpSocket>> clients;
    for (int i = 0; i < round % 5 + 1; ++i) {
      clients.push_back(std::make_unique<QTcpSocket>());
      clients.back()->connectToHost(QHostAddress::LocalHost, connector.port());
    }
    ASSERT_TRUE(process_events_until([&] { return connector.clients().size() == clients.size(); })) << round;
    clients.clear();
    ASSERT_TRUE(process_events_until([&] { return connector.clients().empty(); })) << round;
  }
}

TEST_F(ConnectorTest, ids_grow_by_1000_whatever_became_of_the_first_ones) {
  const auto first = connectClient();
  const qint32 first_id = connector.clients().front()->clientId();
  EXPECT_EQ(first_id % 1000, 0);
  EXPECT_GE(first_id, 1000);
  { const auto second = connectClient(); }
  ASSERT_TRUE(process_events_until([&] { return connector.clients().size() == 1; }));
  const auto third = connectClient();
  EXPECT_EQ(connector.clients().back()->clientId(), first_id + 2000);
  third->write(QByteArray::fromHex("00000001 aa"));
  ASSERT_TRUE(delivers(1));
  EXPECT_EQ(setter.calls.back().client_id, first_id + 2000);
}

TEST_F(ConnectorTest, an_empty_address_listens_on_both_families) {
  const auto over_ipv4 = connectClient(QHostAddress::LocalHost);
  QTcpServer probe;
  if (!probe.listen(QHostAddress::LocalHostIPv6))
    GTEST_SKIP() << "this machine has no IPv6";
  const auto over_ipv6 = connectClient(QHostAddress::LocalHostIPv6);
}

TEST_F(ConnectorTest, any_other_address_is_not_read) {
  // Also an address that could be listened on: the server is there at others all the same.
  for (const char *address : {"192.0.2.1 is not mine", "192.0.2.1", "127.0.0.2", "::1"}) {
    Connector other(QLatin1String(address), 0, &setter);
    ASSERT_TRUE(other.listen()) << address;
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, other.port());
    EXPECT_TRUE(process_events_until([&] { return other.clients().size() == 1; })) << address;
  }
}

TEST_F(ConnectorTest, a_taken_port_cannot_be_listened_on) {
  EXPECT_FALSE(Connector(QString(), connector.port(), &setter).listen());
}

TEST_F(ConnectorTest, answers_go_to_the_connection_that_asked) {
  setter.answer = "answer";
  const auto first = connectClient();
  const auto second = connectClient();
  second->write(QByteArray::fromHex("00000001 aa"));
  EXPECT_TRUE(process_events_until([&] { return second->bytesAvailable() == 6; }));
  EXPECT_EQ(first->bytesAvailable(), 0);
}

TEST_F(ConnectorTest, ended_connections_leave_nothing_behind) {
  const auto children = connector.children().size();
  for (int i = 0; i < 200; ++i) {
    connectClient()->abort();
    ASSERT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  }
  EXPECT_TRUE(process_events_until([&] { return connector.children().size() == children; }));
}

TEST_F(ConnectorTest, comings_and_goings_are_logged) {
  auto client = connectClient();
  const auto descriptor = std::to_string(connector.clients().front()->descriptor());
  client.reset();
  ASSERT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
  EXPECT_THAT(log.take(), ElementsAre("debug: buttondriver: new client ",
                                      "debug: buttondriver: client disconnected " + descriptor + " "));
}

TEST(ListenerTest, lets_qt_accept_nobody) {
  Listener listener;
  ASSERT_TRUE(listener.start(QHostAddress::LocalHost, 0));
  for (int i = 0; i < 3; ++i) {
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, listener.serverPort());
    std::unique_ptr<QTcpSocket> taken;
    ASSERT_TRUE(process_events_until([&] {
      taken.reset(listener.takeNext());
      return taken != nullptr;
    }));
    EXPECT_EQ(taken->state(), QAbstractSocket::ConnectedState);
    taken->setParent(nullptr); // it has notifiers too
    // Whom Qt accepted would be waiting there until the next one comes.
    for (const QSocketNotifier *notifier : listener.findChildren<QSocketNotifier *>())
      EXPECT_FALSE(notifier->isEnabled()) << i;
  }
  EXPECT_EQ(listener.takeNext(), nullptr);
}

} // namespace
} // namespace buttondriver
