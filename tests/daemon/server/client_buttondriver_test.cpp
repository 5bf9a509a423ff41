// SPDX-License-Identifier: Apache-2.0
// The states of one connection, and how it goes from one to the next.

#include "server/client_buttondriver.h"

#include "daemon/server/server_fixture.h"
#include "server/large_frame_budget.h"
#include "server/limits.h"

#include <QMetaMethod>
#include <QMetaObject>
#include <QPointer>
#include <QVariant>

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace buttondriver {
namespace {

using test::frame;
using test::process_events_until;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

class ClientButtondriverTest : public testing::Test {
protected:
  ClientButtondriverTest() {
    EXPECT_TRUE(door.listen(QHostAddress::LocalHost));
    peer.connectToHost(QHostAddress::LocalHost, door.serverPort());
    EXPECT_TRUE(process_events_until([&] { return door.hasPendingConnections(); }));
    EXPECT_TRUE(process_events_until([&] { return peer.state() == QAbstractSocket::ConnectedState; }));
    client.emplace(nullptr, door.nextPendingConnection(), &setter, &budget);
    QObject::connect(&*client, &ClientButtondriver::wantsTurn, [this] { ++turns_wanted; });
    QObject::connect(&*client, &ClientButtondriver::closed, [this] { ++times_closed; });
  }

  /// The peer leaves after it has sent 200 frames, and nobody is there for the answers. Two turns are delivered: the
  /// one whose answers fail, and the first one after that.
  void drainNow() {
    setter.answer = "answer";
    peer.write(frame("work").repeated(200));
    ASSERT_TRUE(peer.waitForBytesWritten(10'000));
    test::reset(peer);
    ASSERT_TRUE(process_events_until([&] { return !client->connected(); }));
    ASSERT_EQ(setter.delivered, 2 * limits::messages_per_turn);
    ASSERT_EQ(times_closed, 0);
  }

  test::CapturedLog log;
  test::RememberingSetter setter;
  LargeFrameBudget budget;
  QTcpServer door;
  QTcpSocket peer;
  std::optional<ClientButtondriver> client;
  int turns_wanted = 0;
  int times_closed = 0;
};

TEST_F(ClientButtondriverTest, that_reads_is_connected) {
  EXPECT_TRUE(client->connected());
  EXPECT_GE(client->descriptor(), 0);
}

TEST_F(ClientButtondriverTest, has_the_system_look_after_a_peer_that_is_cut_off) {
  EXPECT_EQ(client->findChild<QTcpSocket *>()->socketOption(QAbstractSocket::KeepAliveOption).toInt(), 1);
}

TEST_F(ClientButtondriverTest, gives_its_socket_up_when_its_peer_leaves) {
  const QPointer<QTcpSocket> socket = client->findChild<QTcpSocket *>();
  peer.disconnectFromHost();
  EXPECT_TRUE(process_events_until([&] { return socket.isNull(); }));
}

TEST_F(ClientButtondriverTest, with_nothing_left_is_gone_when_its_peer_leaves) {
  peer.disconnectFromHost();
  ASSERT_TRUE(process_events_until([&] { return times_closed > 0; }));
  EXPECT_FALSE(client->connected());
  EXPECT_THAT(log.take(),
              ElementsAre("debug: buttondriver: client disconnected " + std::to_string(client->descriptor()) + " "));
}

TEST_F(ClientButtondriverTest, that_is_blocked_stays_connected_until_its_peer_leaves) {
  peer.write(frame("before") + QByteArray::fromHex("01000001") + "after");
  ASSERT_TRUE(process_events_until([&] { return setter.delivered == 1; }));
  EXPECT_TRUE(client->connected());
  EXPECT_THAT(log.take(), Contains(HasSubstr("frame too large")));
  peer.write(frame("after"));
  peer.disconnectFromHost();
  ASSERT_TRUE(process_events_until([&] { return times_closed > 0; }));
  EXPECT_EQ(setter.delivered, 1U);
  EXPECT_FALSE(client->connected());
}

TEST_F(ClientButtondriverTest, drains_a_turn_at_a_time_and_is_gone_after_the_last_one) {
  drainNow();
  while (times_closed == 0) {
    const std::size_t before = setter.delivered;
    turns_wanted = 0;
    client->takeTurn();
    ASSERT_GT(setter.delivered, before);
    EXPECT_LE(setter.delivered - before, limits::messages_per_turn);
    EXPECT_EQ(turns_wanted, setter.delivered - before == limits::messages_per_turn ? 1 : 0);
  }
  EXPECT_EQ(setter.delivered, 200U);
}

TEST_F(ClientButtondriverTest, does_not_drain_what_has_to_wait) {
  drainNow();
  client->setDelivery(FrameChoice::leading_pings);
  const std::size_t before = setter.delivered;
  client->takeTurn();
  EXPECT_EQ(setter.delivered, before);
  EXPECT_EQ(times_closed, 0);
  client->setDelivery(FrameChoice::all);
  client->takeTurn();
  EXPECT_EQ(setter.delivered, before + limits::messages_per_turn);
}

TEST_F(ClientButtondriverTest, does_not_even_deliver_pings_when_told_so) {
  client->setDelivery(FrameChoice::none);
  peer.write(frame(test::ping));
  ASSERT_TRUE(process_events_until([&] { return !setter.calls.empty(); }));
  EXPECT_EQ(setter.delivered, 0U);
  client->setDelivery(FrameChoice::leading_pings);
  client->takeTurn();
  EXPECT_EQ(setter.delivered, 1U);
}

TEST_F(ClientButtondriverTest, ends_its_turn_with_a_null_message_and_wants_another_when_more_is_there) {
  peer.write(frame("before") + frame(QByteArray(4, '\0')) + frame("after"));
  ASSERT_TRUE(process_events_until([&] { return setter.delivered > 0; }));
  EXPECT_THAT(setter.messages(), ElementsAre("before", QByteArray(4, '\0')));
  EXPECT_EQ(turns_wanted, 1);
  client->takeTurn();
  EXPECT_EQ(setter.messages().back(), "after");
  EXPECT_EQ(turns_wanted, 1);
}

TEST_F(ClientButtondriverTest, that_is_gone_stays_gone) {
  peer.disconnectFromHost();
  ASSERT_TRUE(process_events_until([&] { return times_closed > 0; }));
  log.take();
  ASSERT_TRUE(QMetaObject::invokeMethod(&*client, "clientDisconnected"));
  EXPECT_THAT(log.take(), ElementsAre());
  client->takeTurn();
  EXPECT_THAT(log.take(), ElementsAre("critical: buttondriver::ClientButtondriver::clientData NULL socket "));
  EXPECT_EQ(times_closed, 1);
}

TEST_F(ClientButtondriverTest, gives_its_share_of_the_budget_back_when_its_peer_leaves_or_it_is_deleted) {
  const qint64 all = limits::large_frames;
  for (const bool is_deleted : {false, true}) {
    SCOPED_TRACE(is_deleted);
    QTcpSocket other;
    other.connectToHost(QHostAddress::LocalHost, door.serverPort());
    ASSERT_TRUE(process_events_until([&] { return door.hasPendingConnections(); }));
    client.emplace(nullptr, door.nextPendingConnection(), &setter, &budget);
    other.write(QByteArray::fromHex("00100000"));
    ASSERT_TRUE(process_events_until([&] {
      const bool is_whole = budget.take(all);
      if (is_whole)
        budget.giveBack(all);
      return !is_whole;
    }));
    if (is_deleted)
      client.reset();
    else
      other.disconnectFromHost();
    EXPECT_TRUE(process_events_until([&] { return budget.take(all); }));
    budget.giveBack(all);
  }
}

TEST_F(ClientButtondriverTest, made_without_a_budget_has_one_of_its_own) {
  QTcpSocket other;
  other.connectToHost(QHostAddress::LocalHost, door.serverPort());
  ASSERT_TRUE(process_events_until([&] { return door.hasPendingConnections(); }));
  ASSERT_TRUE(budget.take(limits::large_frames));
  ClientButtondriver on_its_own(nullptr, door.nextPendingConnection(), &setter);
  other.write(frame(QByteArray(200'000, 'x')));
  EXPECT_TRUE(process_events_until([&] { return setter.delivered == 1; }));
}

/// The slots that `type` itself declares, each as "public name()".
std::vector<std::string> slots_of(const QMetaObject &type) {
  std::vector<std::string> found;
  for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
    const QMetaMethod method = type.method(i);
    if (method.methodType() == QMetaMethod::Slot)
      found.push_back((method.access() == QMetaMethod::Public ? "public " : "private ") +
                      method.methodSignature().toStdString());
  }
  return found;
}

TEST(ServerSlotsTest, are_those_that_react_to_sockets) {
  EXPECT_THAT(slots_of(Connector::staticMetaObject), ElementsAre("public newClient()"));
  EXPECT_THAT(slots_of(ClientButtondriver::staticMetaObject),
              testing::UnorderedElementsAre("private clientDisconnected()", "private clientData()"));
}

TEST(ClientWithoutSocketTest, stays_unconnected_and_logs_it) {
  test::RememberingSetter setter;
  test::CapturedLog log;
  LargeFrameBudget budget;
  ClientButtondriver client(nullptr, nullptr, &setter, &budget);
  EXPECT_FALSE(client.connected());
  EXPECT_EQ(client.descriptor(), -1);
  ASSERT_TRUE(QMetaObject::invokeMethod(&client, "clientData"));
  ASSERT_TRUE(QMetaObject::invokeMethod(&client, "clientDisconnected"));
  EXPECT_THAT(log.take(), ElementsAre("debug: collector: ClientButtondriver::ClientButtondriver, null socket ",
                                      "critical: buttondriver::ClientButtondriver::clientData NULL socket "));
  EXPECT_TRUE(setter.calls.empty());
}

} // namespace
} // namespace buttondriver
