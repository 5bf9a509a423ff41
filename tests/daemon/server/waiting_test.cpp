// SPDX-License-Identifier: Apache-2.0
// Clients wait while the server is paused or holds them.

#include "daemon/server/server_fixture.h"
#include "server/limits.h"

#include <gmock/gmock.h>

#include <memory>

namespace buttondriver {
namespace {

using test::frame;
using test::ping;
using test::process_events_until;
using testing::ElementsAre;

class WaitingTest : public test::ServerFixture {};

TEST_F(WaitingTest, nothing_is_lost_or_reordered_across_pauses_whatever_the_frame_size) {
  // Odd sizes make the read-ahead end inside a frame.
  for (const int size : {7, 1001, 40'003}) {
    setter.forget();
    const auto client = connectClient();
    const int count = 1'500'000 / size;
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

TEST_F(WaitingTest, pings_are_answered_while_paused_and_stay_in_order) {
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

TEST_F(WaitingTest, everybody_is_accepted_and_answered_while_paused) {
  connector.pauseReading();
  connector.holdAllClients();
  const auto client = connectClient();
  client->write(frame(ping) + frame("patience"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1; }));
  settle();
  EXPECT_EQ(delivered(), 1U);
  connector.resumeReading();
  settle();
  EXPECT_EQ(delivered(), 1U) << "the other reason is still there";
  connector.releaseAllClients();
  EXPECT_TRUE(process_events_until([&] { return delivered() == 2; }));
}

TEST_F(WaitingTest, one_of_two_reasons_is_enough_and_the_event_loop_is_at_rest_meanwhile) {
  const auto client = connectClient();
  connector.pauseReading();
  connector.holdAllClients();
  client->write(frame("work"));
  settle();
  connector.resumeReading();
  int rounds = 0; // of the event loop that had something to do
  while (rounds < 100 && QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents))
    ++rounds;
  EXPECT_LT(rounds, 100);
  connector.releaseAllClients();
  EXPECT_EQ(delivered(), 1U);
}

TEST_F(WaitingTest, null_messages_wait_and_with_them_what_follows_on_their_connections) {
  const QByteArray null_message(4, '\0');
  const auto sender = connectClient();
  const auto other = connectClient();
  connector.holdNullMessages();
  const auto third = connectClient();
  sender->write(frame("before") + frame(null_message) + frame(ping));
  for (const auto &client : {&other, &third})
    (*client)->write(frame("") + frame("work") + frame(ping));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 7; }));
  settle();
  EXPECT_EQ(delivered(), 7U);
  EXPECT_THAT(setter.messages(), testing::Not(testing::Contains(null_message)));
  connector.pauseReading();
  connector.resumeReading();
  settle();
  EXPECT_EQ(delivered(), 7U);
  connector.releaseNullMessages();
  ASSERT_TRUE(process_events_until([&] { return delivered() == 9; }));
  EXPECT_EQ(setter.messages()[7], null_message);
  EXPECT_EQ(setter.messages()[8], ping);
}

TEST_F(WaitingTest, a_server_that_does_not_listen_waits_and_goes_on_like_any_other) {
  Connector before_listen(QString(), 0, &setter);
  Connector after_failure(QString(), connector.port(), &setter);
  ASSERT_FALSE(after_failure.listen());
  for (Connector *deaf : {&before_listen, &after_failure}) {
    deaf->pauseReading();
    deaf->resumeReading();
    EXPECT_EQ(deaf->port(), 0);
  }
}

TEST_F(WaitingTest, a_client_that_is_held_gets_nothing_not_even_pings_and_others_get_everything) {
  const auto held = connectClient();
  const qint32 held_id = connector.clients().front()->clientId();
  connector.holdClient(held_id);
  const auto other = connectClient();
  held->write(frame(ping) + frame("held") + frame(ping));
  other->write(frame("other"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1; }));
  settle();
  EXPECT_THAT(setter.messages(), ElementsAre("other"));
  connector.pauseReading();
  connector.resumeReading();
  connector.holdAllClients();
  connector.releaseAllClients();
  connector.releaseClient(connector.clients().back()->clientId());
  settle();
  EXPECT_EQ(delivered(), 1U) << "it is released by nothing else";
  connector.releaseClient(held_id);
  EXPECT_TRUE(process_events_until([&] { return delivered() == 4; }));
  EXPECT_THAT(setter.messages(), ElementsAre("other", ping, "held", ping));
}

TEST_F(WaitingTest, to_hold_or_release_a_client_that_is_not_there_concerns_nobody) {
  const auto client = connectClient();
  const qint32 id = connector.clients().front()->clientId();
  connector.holdClient(id + 1000);
  client->write(frame("free"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1; }));
  connector.holdClient(id);
  connector.releaseClient(id + 1000);
  client->write(frame("held"));
  settle();
  EXPECT_EQ(delivered(), 1U);
}

TEST_F(WaitingTest, a_client_that_is_released_while_all_wait_gets_its_pings) {
  const auto client = connectClient();
  const qint32 id = connector.clients().front()->clientId();
  connector.holdClient(id);
  connector.holdAllClients();
  client->write(frame(ping) + frame("held"));
  settle();
  EXPECT_EQ(delivered(), 0U);
  connector.releaseClient(id);
  settle();
  EXPECT_THAT(setter.messages(), ElementsAre(ping));
  connector.releaseAllClients();
  EXPECT_TRUE(process_events_until([&] { return delivered() == 2; }));
}

TEST_F(WaitingTest, while_all_clients_are_held_so_are_those_that_come) {
  const auto first = connectClient();
  connector.holdAllClients();
  const auto second = connectClient();
  for (const auto *client : {&first, &second})
    (*client)->write(frame(ping) + frame("held"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 2; }));
  settle();
  EXPECT_THAT(setter.messages(), ElementsAre(ping, ping));
  connector.releaseAllClients();
  EXPECT_TRUE(process_events_until([&] { return delivered() == 4; }));
  const auto third = connectClient();
  third->write(frame("free"));
  EXPECT_TRUE(process_events_until([&] { return delivered() == 5; }));
}

} // namespace
} // namespace buttondriver
