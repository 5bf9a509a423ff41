// SPDX-License-Identifier: Apache-2.0
// The states of one connection, and how it goes from one to the next.

#include "server/client_buttondriver.h"

#include "daemon/server/server_fixture.h"
#include "server/frames/large_frame_budget.h"
#include "server/limits.h"

#include <QMetaMethod>
#include <QMetaObject>
#include <QPointer>
#include <QVariant>

#include <gmock/gmock.h>

#include <chrono>
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
    QObject::connect(&*client, &ClientButtondriver::wantsTurn,
                     [this](bool has_to_wait) { turns_wanted += has_to_wait ? 0 : 1; });
    QObject::connect(&*client, &ClientButtondriver::closed, [this] { ++times_closed; });
  }

  /// The socket ends when 200 frames have been read, of which a first turn is delivered; a second one is at the end.
  void drainNow() {
    peer.write(frame("work").repeated(200));
    ASSERT_TRUE(process_events_until([&] { return setter.delivered > 0; }));
    ASSERT_EQ(client->findChild<QTcpSocket *>()->bytesAvailable(), (200 - 64) * 8);
    ASSERT_TRUE(QMetaObject::invokeMethod(&*client, "clientDisconnected"));
    ASSERT_FALSE(client->connected());
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

TEST_F(ClientButtondriverTest, with_nothing_but_a_skipped_frame_is_gone_when_its_peer_leaves) {
  peer.write(frame("before") + QByteArray::fromHex("01000001") + frame("inside"));
  ASSERT_TRUE(process_events_until([&] { return setter.delivered == 1; }));
  EXPECT_TRUE(client->connected());
  EXPECT_THAT(log.take(), Contains(HasSubstr("frame too large")));
  peer.write(frame("inside"));
  peer.disconnectFromHost();
  ASSERT_TRUE(process_events_until([&] { return times_closed > 0; }));
  EXPECT_EQ(setter.delivered, 1U);
  EXPECT_FALSE(client->connected());
}

TEST_F(ClientButtondriverTest, tells_what_its_turns_cost_and_ends_one_that_costs_enough) {
  std::vector<qint64> costs;
  QObject::connect(&*client, &ClientButtondriver::tookTurn, [&](qint64 cost) { costs.push_back(cost); });
  struct Row {
    std::chrono::nanoseconds device_time;
    int sent;
    std::vector<qint64> costs; // microseconds, of each turn
  };
  const Row rows[] = {
      {std::chrono::nanoseconds(0), 100, {64 * 20, 36 * 20}},
      {std::chrono::milliseconds(4), 5, {12'000, 8'000}},
      {std::chrono::milliseconds(10), 2, {10'000, 10'000}},
      {std::chrono::milliseconds(30), 2, {30'000, 30'000}},
  };
  for (const Row &row : rows) {
    costs.clear();
    setter.forget();
    setter.device_time = row.device_time;
    peer.write(frame("work").repeated(row.sent));
    ASSERT_TRUE(process_events_until([&] { return setter.delivered > 0; }));
    while (setter.delivered < static_cast<std::size_t>(row.sent))
      client->takeTurn();
    std::vector<qint64> expected;
    for (const qint64 cost : row.costs)
      expected.push_back(cost * 1000);
    EXPECT_EQ(costs, expected);
  }
}

TEST_F(ClientButtondriverTest, tells_that_it_waits_while_everybody_does) {
  int times_waiting = 0;
  QObject::connect(&*client, &ClientButtondriver::wantsTurn,
                   [&](bool has_to_wait) { times_waiting += has_to_wait ? 1 : 0; });
  client->setDelivery(FrameChoice::leading_pings);
  peer.write(frame("work"));
  EXPECT_TRUE(process_events_until([&] { return times_waiting == 1; }));
  client->takeTurn();
  EXPECT_EQ(times_waiting, 2);
  client->setDelivery(FrameChoice::none);
  client->takeTurn();
  EXPECT_EQ(times_waiting, 2) << "it would ask again and again";
  EXPECT_EQ(turns_wanted, 0);
  EXPECT_EQ(setter.delivered, 0U);
}

TEST_F(ClientButtondriverTest, that_gives_up_is_gone_at_once) {
  client->setDelivery(FrameChoice::none);
  peer.write(frame("work"));
  ASSERT_TRUE(process_events_until([&] { return !setter.calls.empty(); }));
  EXPECT_FALSE(client->hasSpoken());
  client->giveUp();
  EXPECT_FALSE(client->connected());
  EXPECT_EQ(times_closed, 1);
  client->giveUp();
  EXPECT_EQ(times_closed, 1);
  EXPECT_TRUE(process_events_until([&] { return peer.state() == QAbstractSocket::UnconnectedState; }));
}

TEST_F(ClientButtondriverTest, gives_back_what_a_large_frame_took_when_it_is_delivered) {
  LargeFrameBudget small_budget(limits::largest_frame); // the kept room, and nothing else
  QTcpSocket sender;
  sender.connectToHost(QHostAddress::LocalHost, door.serverPort());
  ASSERT_TRUE(process_events_until([&] { return door.hasPendingConnections(); }));
  client.emplace(nullptr, door.nextPendingConnection(), &setter, &small_budget);
  for (const char kind : {'x', '\0'}) { // a null message too
    SCOPED_TRACE(int{kind});
    setter.forget();
    sender.write(frame(QByteArray(500'000, kind)));
    ASSERT_TRUE(process_events_until([&] { return !small_budget.hasRoomForOne(); }));
    ASSERT_TRUE(process_events_until([&] { return setter.delivered == 1; }));
    EXPECT_TRUE(small_budget.hasRoomForOne());
  }
}

TEST_F(ClientButtondriverTest, skips_a_frame_that_others_had_to_wait_for) {
  std::chrono::steady_clock::time_point now{};
  LargeFrameBudget small_budget(limits::largest_frame, [&] { return now; }); // the kept room, and nothing else
  QTcpSocket sender;
  sender.connectToHost(QHostAddress::LocalHost, door.serverPort());
  ASSERT_TRUE(process_events_until([&] { return door.hasPendingConnections(); }));
  client.emplace(nullptr, door.nextPendingConnection(), &setter, &small_budget);
  sender.write(QByteArray::fromHex("000f0000") + QByteArray(500'000, 'x'));
  ASSERT_TRUE(process_events_until([&] { return !small_budget.hasRoomForOne() && sender.bytesToWrite() == 0; }));
  LargeFrameBudget::Share other(&small_budget, [] {});
  EXPECT_FALSE(other.grow(1));
  now += limits::large_frame_patience;
  EXPECT_TRUE(other.grow(1));
  EXPECT_THAT(log.take(), Contains(HasSubstr("frame does not arrive, skipped, descriptor ")));
  sender.write(QByteArray(0xF0000 - 500'000, 'x') + frame("after it"));
  ASSERT_TRUE(process_events_until([&] { return setter.delivered > 0; }));
  EXPECT_THAT(setter.messages(), ElementsAre("after it"));
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
  const qint64 all = budget.free();
  for (const bool is_deleted : {false, true}) {
    SCOPED_TRACE(is_deleted);
    QTcpSocket other;
    other.connectToHost(QHostAddress::LocalHost, door.serverPort());
    ASSERT_TRUE(process_events_until([&] { return door.hasPendingConnections(); }));
    client.emplace(nullptr, door.nextPendingConnection(), &setter, &budget);
    other.write(QByteArray::fromHex("00100000") + QByteArray(200'000, 'x'));
    ASSERT_TRUE(process_events_until([&] { return budget.free() < all; }));
    if (is_deleted)
      client.reset();
    else
      other.disconnectFromHost();
    EXPECT_TRUE(process_events_until([&] { return budget.free() == all; }));
  }
}

TEST_F(ClientButtondriverTest, gives_its_share_of_the_budget_back_when_the_frame_is_delivered) {
  const qint64 all = budget.free();
  peer.write(frame(QByteArray(200'000, 'x')) + frame("after it"));
  ASSERT_TRUE(process_events_until([&] { return setter.delivered == 2; }));
  EXPECT_EQ(budget.free(), all);
}

TEST_F(ClientButtondriverTest, tells_that_it_waits_for_the_budget_and_goes_on_with_a_turn) {
  LargeFrameBudget small_budget(limits::largest_frame); // the kept room, and nothing else
  LargeFrameBudget::Share other(&small_budget, [] {});
  ASSERT_TRUE(other.grow(1));
  QTcpSocket sender;
  sender.connectToHost(QHostAddress::LocalHost, door.serverPort());
  ASSERT_TRUE(process_events_until([&] { return door.hasPendingConnections(); }));
  client.emplace(nullptr, door.nextPendingConnection(), &setter, &small_budget);
  int times_waiting = 0;
  QObject::connect(&*client, &ClientButtondriver::waitsForBudget, [&] { ++times_waiting; });
  sender.write(frame(QByteArray(200'000, 'x')));
  ASSERT_TRUE(process_events_until([&] { return times_waiting > 0; }));
  EXPECT_EQ(setter.delivered, 0U);
  other.release();
  client->takeTurn();
  EXPECT_TRUE(process_events_until([&] { return setter.delivered == 1; }));
}

TEST_F(ClientButtondriverTest, made_without_a_budget_has_one_of_its_own) {
  QTcpSocket other;
  other.connectToHost(QHostAddress::LocalHost, door.serverPort());
  ASSERT_TRUE(process_events_until([&] { return door.hasPendingConnections(); }));
  const qint64 all = budget.free();
  ClientButtondriver on_its_own(nullptr, door.nextPendingConnection(), &setter);
  other.write(frame(QByteArray(200'000, 'x')));
  EXPECT_TRUE(process_events_until([&] {
    EXPECT_EQ(budget.free(), all);
    return setter.delivered == 1;
  }));
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
