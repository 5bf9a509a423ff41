// SPDX-License-Identifier: Apache-2.0
// When a connection to a broker is tried, and when no more.
#include "scripted_broker.h"
#include "watched_connection.h"

#include <QHostInfo>

using buttondriver::test::MosquittoBroker;
using buttondriver::test::process_events_until;
using buttondriver::test::process_ready_events;

namespace buttondriver::bridge {
namespace {

using Manner = ScriptedBroker::Manner;

BrokerConnection::Times pauses(int longest_ms) {
  BrokerConnection::Times times = short_times();
  times.first_pause_ms = 1;
  times.longest_pause_ms = longest_ms;
  return times;
}

BrokerSettings settings_at(const ScriptedBroker &broker) {
  BrokerSettings settings;
  settings.port = broker.port();
  return settings;
}

/// Goes on at the same pace, to compare with.
struct SteadyAttempts {
  SteadyAttempts() { EXPECT_TRUE(connection.connection.start(settings_at(broker))); }
  int count() const { return broker.clients(); }

  const ScriptedBroker broker{"", Manner::close_at_once};
  WatchedConnection connection{pauses(1)};
};

class ClosingBrokerTest : public testing::TestWithParam<Manner> {};

INSTANTIATE_TEST_SUITE_P(Each, ClosingBrokerTest, testing::Values(Manner::close_at_once, Manner::answer_and_close),
                         [](const auto &row) { return row.param == Manner::close_at_once ? "at_once" : "accepting"; });

TEST_P(ClosingBrokerTest, is_tried_after_longer_and_longer_pauses) {
  const ScriptedBroker closing(accepted_5, GetParam());
  WatchedConnection connection(pauses(1'000'000));
  const SteadyAttempts steady;
  ASSERT_TRUE(connection.connection.start(settings_at(closing)));
  // The pauses of 1 to 2^n milliseconds take as long as 2^n of the others, about.
  ASSERT_TRUE(process_events_until([&] { return steady.count() >= 200; }));
  EXPECT_LT(closing.clients(), 20);
  EXPECT_EQ(connection.connects > 0, GetParam() == Manner::answer_and_close);
}

// The broker ends the connection of one whenever the other one connects.
TEST(AttemptsTest, come_after_longer_and_longer_pauses_where_two_have_one_name) {
  const MosquittoBroker broker;
  WatchedConnection one(pauses(1'000'000));
  WatchedConnection other(pauses(1'000'000));
  const SteadyAttempts steady;
  for (WatchedConnection *connection : {&one, &other})
    ASSERT_TRUE(connection->connection.start(settings_for(broker, "same")));
  ASSERT_TRUE(process_events_until([&] { return steady.count() >= 200 && one.connects + other.connects >= 6; }));
  EXPECT_LT(one.connects + other.connects, 40);
}

TEST(AttemptsTest, begin_again_when_a_connection_has_lasted) {
  constexpr int longest_ms = 500;
  ScriptedBroker broker(accepted_5, Manner::answer_and_close);
  WatchedConnection connection(pauses(longest_ms));
  ASSERT_TRUE(connection.connection.start(settings_at(broker)));
  ASSERT_TRUE(process_events_until([&] { return broker.clients() >= 10; })); // the next pause is the longest one
  broker.setManner(Manner::answer);
  const int connects = broker.clients() + 1;
  ASSERT_TRUE(process_events_until([&] { return connection.connects == connects; }));
  bool has_lasted = false;
  QTimer::singleShot(3 * longest_ms, [&] { has_lasted = true; });
  ASSERT_TRUE(process_events_until([&] { return has_lasted; }));
  const SteadyAttempts steady;
  broker.dropClients();
  ASSERT_TRUE(process_events_until([&] { return connection.connects > connects; }));
  EXPECT_LT(steady.count(), 50) << "the pause was a long one";
}

TEST(AttemptsTest, begin_again_with_a_start) {
  const ScriptedBroker closing("", Manner::close_at_once);
  WatchedConnection connection(pauses(1'000'000));
  ASSERT_TRUE(connection.connection.start(settings_at(closing)));
  ASSERT_TRUE(process_events_until([&] { return closing.clients() >= 10; }));
  const ScriptedBroker other("", Manner::close_at_once);
  const SteadyAttempts steady;
  ASSERT_TRUE(connection.connection.start(settings_at(other)));
  ASSERT_TRUE(process_events_until([&] { return other.clients() >= 3; }));
  EXPECT_LT(steady.count(), 100) << "the pause had grown";
}

TEST(AttemptsTest, end_with_stop_wherever_they_are) {
  const ScriptedBroker broker(accepted_5);
  BrokerSettings settings = settings_at(broker);
  for (const char *host : {"127.0.0.1", "localhost"}) {
    settings.host = QString::fromLatin1(host);
    for (int rounds = 0; rounds < 6; ++rounds) {
      WatchedConnection connection(pauses(1));
      ASSERT_TRUE(connection.connection.start(settings));
      for (int i = 0; i < rounds; ++i)
        QCoreApplication::processEvents();
      connection.connection.stop(0);
      const int connects = connection.connects;
      const auto reasons = connection.reasons; // "localhost" may mean ::1 first
      bool is_found = false;
      QObject context;
      QHostInfo::lookupHost(settings.host, &context, [&](const QHostInfo &) { is_found = true; });
      ASSERT_TRUE(process_events_until([&] { return is_found; }));
      for (int i = 0; i < 10; ++i)
        process_ready_events();
      EXPECT_EQ(connection.connects, connects);
      EXPECT_FALSE(connection.connection.isConnected());
      EXPECT_EQ(connection.reasons, reasons);
    }
  }
}

TEST(AttemptsTest, at_a_start_the_former_connection_is_over) {
  const ScriptedBroker broker(accepted_5);
  WatchedConnection connection;
  connection.start(settings_at(broker));
  ASSERT_TRUE(connection.connection.start(settings_at(broker)));
  EXPECT_FALSE(connection.connection.isConnected());
  ASSERT_TRUE(process_events_until([&] { return connection.connects == 2; }));
}

} // namespace
} // namespace buttondriver::bridge
