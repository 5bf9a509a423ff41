// SPDX-License-Identifier: Apache-2.0
#include "scripted_broker.h"
#include "support/captured_log.h"
#include "watched_connection.h"

#include <gmock/gmock.h>

#include <algorithm>

using buttondriver::test::CapturedLog;
using buttondriver::test::MosquittoBroker;
using buttondriver::test::process_events_until;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

namespace buttondriver::bridge {
namespace {

BrokerSettings settings_at(const ScriptedBroker &broker, bool is_mqtt_5) {
  BrokerSettings settings;
  settings.port = broker.port();
  settings.client_id = "one";
  settings.is_mqtt_5 = is_mqtt_5;
  settings.keep_alive_seconds = 3000; // so that nothing is found out by that
  return settings;
}

class WrongUserTest : public testing::TestWithParam<std::pair<bool, std::string>> {};

INSTANTIATE_TEST_SUITE_P(
    Each, WrongUserTest,
    testing::Values(std::make_pair(true, "the broker refuses this client: Not authorized"),
                    std::make_pair(false, "the broker refuses this client: Connection Refused: not authorised.")));

TEST_P(WrongUserTest, is_told_and_tried_again) {
  MosquittoBroker::Options options;
  options.users = {{"anna", "right"}};
  const MosquittoBroker broker(options);
  WatchedConnection connection;
  BrokerSettings settings = settings_for(broker, "one", GetParam().first);
  settings.user = QStringLiteral("anna");
  settings.password = "wrong";
  ASSERT_TRUE(connection.connection.start(settings));
  ASSERT_TRUE(process_events_until([&] { return connection.reasons.size() == 3; }));
  EXPECT_EQ(connection.lastReason(), GetParam().second);
  EXPECT_EQ(connection.connects, 0);
  settings.password = "right";
  connection.start(settings);
}

struct Row {
  const char *name;
  bool is_mqtt_5;
  QByteArray answer;
  ScriptedBroker::Manner manner;
  const char *reason;
  bool is_connected_first = false;
};

class BadBrokerTest : public testing::TestWithParam<Row> {};

using Manner = ScriptedBroker::Manner;

INSTANTIATE_TEST_SUITE_P(
    Each, BadBrokerTest,
    testing::Values(
        Row{"that_is_too_old_for_mqtt_5", true, QByteArray::fromHex("20020001"), Manner::answer_and_close,
            "the broker refuses this client: Unsupported Protocol Version"},
        Row{"that_does_not_take_mqtt_3_1_1", false, QByteArray::fromHex("20020001"), Manner::answer_and_close,
            "the broker refuses this client: Connection Refused: unacceptable protocol version."},
        // Reason 0x88, and a reason in words: "tea".
        Row{"that_says_more", true, QByteArray::fromHex("2009008806") + QByteArray::fromHex("1f0003") + "tea",
            Manner::answer_and_close, "the broker refuses this client: Server unavailable: tea"},
        Row{"that_ends_the_connection", true, accepted_5 + QByteArray::fromHex("e0028b00"), Manner::answer_and_close,
            "the broker ends the connection: Server shutting down", true},
        Row{"that_closes_after_its_answer", false, accepted_3_1_1, Manner::answer_and_close,
            "the broker has closed the connection", true},
        Row{"that_closes_at_once", true, "", Manner::close_at_once, "the broker has closed the connection"},
        Row{"that_never_answers", true, "", Manner::answer, "the broker does not answer"},
        Row{"that_speaks_another_language", true, "HTTP/1.1 400 Bad Request\r\n\r\n", Manner::answer_and_close, ""},
        Row{"that_promises_more_than_it_sends", true, accepted_5 + QByteArray::fromHex("30ffffff7f00"),
            Manner::answer_and_close, "the broker has closed the connection", true},
        Row{"that_sends_a_length_that_cannot_be", true, accepted_5 + QByteArray::fromHex("30ffffffffff"),
            Manner::answer, "", true}),
    [](const auto &row) { return row.param.name; });

TEST_P(BadBrokerTest, is_told_and_tried_again) {
  const Row &row = GetParam();
  const ScriptedBroker broker(row.answer, row.manner);
  BrokerConnection::Times times = short_times();
  if (row.answer.isEmpty())
    times.most_connecting_ms = 50;
  WatchedConnection connection(times);
  ASSERT_TRUE(connection.connection.start(settings_at(broker, row.is_mqtt_5)));
  ASSERT_TRUE(process_events_until([&] { return connection.reasons.size() >= 3; }));
  if (*row.reason != '\0') {
    EXPECT_EQ(connection.lastReason(), row.reason);
  }
  EXPECT_NE(connection.lastReason(), "");
  EXPECT_GE(broker.clients(), 3);
  EXPECT_EQ(connection.connects > 0, row.is_connected_first);
}

TEST(BadBrokerTest, that_answers_nothing_any_more_is_noticed) {
  const ScriptedBroker broker(accepted_5);
  BrokerConnection::Times times = short_times();
  times.most_connecting_ms = 3000; // is over by then
  WatchedConnection connection(times);
  BrokerSettings settings = settings_at(broker, true);
  settings.keep_alive_seconds = 5;
  connection.start(settings);
  ASSERT_TRUE(process_events_until([&] { return !connection.reasons.isEmpty(); }));
  EXPECT_EQ(connection.reasons.first().toStdString(), "the broker does not answer any more");
}

TEST(BadBrokerTest, that_does_not_read_fills_no_memory) {
  const ScriptedBroker broker(accepted_5);
  WatchedConnection connection;
  connection.start(settings_at(broker, true));
  const QByteArray payload(10'000, 'x');
  constexpr int count = 5000;
  int published = 0;
  for (int i = 0; i < count; ++i)
    published += connection.connection.publish("a", payload, false, 0);
  EXPECT_LT(published, count);
  EXPECT_EQ(connection.connection.dropped(), static_cast<quint64>(count - published));
  EXPECT_EQ(connection.connection.waitingMessages(), 1024 * 1024 / 10'001);
  // There is still room for what matters more.
  EXPECT_TRUE(connection.connection.publish("a", payload, false, 1));
}

TEST(BadBrokerTest, that_sends_very_much_at_once_leaves_others_their_turns) {
  QByteArray messages = accepted_3_1_1;
  constexpr std::size_t count = 2000;
  for (std::size_t i = 0; i < count; ++i)
    messages += QByteArray::fromHex("30050001") + "axy"; // topic "a", payload "xy"
  const ScriptedBroker broker(messages);
  WatchedConnection connection;
  std::size_t most_in_a_round = 0;
  std::size_t before = 0;
  QTimer each_round;
  QObject::connect(&each_round, &QTimer::timeout, [&] {
    most_in_a_round = std::max(most_in_a_round, connection.messages.size() - before);
    before = connection.messages.size();
  });
  each_round.start(0);
  connection.start(settings_at(broker, false));
  ASSERT_TRUE(connection.waitForMessages(count));
  EXPECT_LE(most_in_a_round, 2 * 64U);
  EXPECT_THAT(connection.messages, Contains(Arrival{"a", "xy", false, false}).Times(static_cast<int>(count)));
}

TEST(RefusedSubscriptionTest, is_logged) {
  const ScriptedBroker broker(QVector<QByteArray>{accepted_5, QByteArray::fromHex("900500010001") + '\x87'});
  CapturedLog log;
  WatchedConnection connection;
  connection.filters = {"a/#", "b/#"};
  connection.start(settings_at(broker, true));
  std::vector<std::string> lines;
  ASSERT_TRUE(process_events_until([&] {
    for (const std::string &line : log.take())
      lines.push_back(line);
    return !lines.empty();
  }));
  EXPECT_THAT(lines, ElementsAre("critical: The broker refuses the subscription of \"b/#\" with code 135 "));
}

TEST(LostMarkerTest, is_logged_and_taken_for_the_end) {
  MosquittoBroker::Options options;
  options.access_list = "topic readwrite a/#\ntopic write marker\n";
  const MosquittoBroker broker(options);
  CapturedLog log;
  BrokerConnection::Times times = short_times();
  times.quiet_ms = 20;
  WatchedConnection connection(times);
  connection.filters = {"a/#"};
  connection.marker_topic = "marker";
  connection.startAndCollect(settings_for(broker, "one"));
  EXPECT_THAT(log.take(),
              ElementsAre("critical: The broker does not send \"marker\" back: what it keeps may be incomplete "));
}

TEST(UnknownHostTest, is_told_and_tried_again) {
  WatchedConnection connection;
  BrokerSettings settings;
  settings.host = QStringLiteral("no..host"); // which no server of names is asked for
  ASSERT_TRUE(connection.connection.start(settings));
  ASSERT_TRUE(process_events_until([&] { return connection.reasons.size() >= 3; }));
  EXPECT_NE(connection.lastReason(), "");
}

struct WrongSettingsRow {
  const char *name;
  void (*make_wrong)(BrokerSettings &);
};

class WrongSettingsTest : public testing::TestWithParam<WrongSettingsRow> {};

QString some_file() { return QCoreApplication::applicationFilePath(); }

INSTANTIATE_TEST_SUITE_P(
    Each, WrongSettingsTest,
    testing::Values(WrongSettingsRow{"no_host", [](BrokerSettings &one) { one.host.clear(); }},
                    WrongSettingsRow{"no_port", [](BrokerSettings &one) { one.port = 0; }},
                    WrongSettingsRow{"too_short_a_time", [](BrokerSettings &one) { one.keep_alive_seconds = 4; }},
                    WrongSettingsRow{"too_long_a_time", [](BrokerSettings &one) { one.keep_alive_seconds = 65536; }},
                    WrongSettingsRow{"no_key", [](BrokerSettings &one) { one.cert_file = some_file(); }},
                    WrongSettingsRow{"no_certificate", [](BrokerSettings &one) { one.key_file = some_file(); }},
                    WrongSettingsRow{"no_authority_there",
                                     [](BrokerSettings &one) { one.ca_file = QStringLiteral("/nowhere"); }},
                    WrongSettingsRow{"no_certificate_there",
                                     [](BrokerSettings &one) {
                                       one.cert_file = QStringLiteral("/nowhere");
                                       one.key_file = some_file();
                                     }},
                    WrongSettingsRow{"no_key_there",
                                     [](BrokerSettings &one) {
                                       one.cert_file = some_file();
                                       one.key_file = QStringLiteral("/nowhere");
                                     }}),
    [](const auto &row) { return row.param.name; });

TEST_P(WrongSettingsTest, are_refused_at_once) {
  BrokerConnection connection;
  BrokerSettings settings;
  settings.has_tls = true;
  EXPECT_TRUE(BrokerConnection::check(settings));
  GetParam().make_wrong(settings);
  const auto outcome = connection.start(settings);
  ASSERT_FALSE(outcome);
  EXPECT_NE(outcome.failure().text, QString());
}

} // namespace
} // namespace buttondriver::bridge
