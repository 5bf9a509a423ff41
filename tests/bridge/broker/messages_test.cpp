// SPDX-License-Identifier: Apache-2.0
#include "watched_connection.h"

#include <gmock/gmock.h>

#include <algorithm>

using buttondriver::test::MosquittoBroker;
using buttondriver::test::process_events_until;
using testing::ElementsAre;

namespace buttondriver::bridge {
namespace {

class BrokerMessagesTest : public testing::TestWithParam<bool> {
protected:
  BrokerSettings settings(const QByteArray &client_id) const { return settings_for(broker, client_id, GetParam()); }

  MosquittoBroker broker;
};

INSTANTIATE_TEST_SUITE_P(Each, BrokerMessagesTest, testing::Values(true, false),
                         [](const auto &row) { return row.param ? "mqtt_5" : "mqtt_3_1_1"; });

TEST_P(BrokerMessagesTest, what_was_kept_and_what_is_new_differ_as_far_as_the_protocol_tells) {
  WatchedConnection sender;
  sender.start(settings("sender"));
  EXPECT_TRUE(sender.connection.publish("a/kept", "1", true, 1));
  EXPECT_TRUE(sender.connection.publish("a/passing", "2", false, 1));
  ASSERT_TRUE(sender.waitUntilSent());

  WatchedConnection receiver;
  receiver.filters = {"a/#"};
  receiver.marker_topic = "marker";
  receiver.startAndCollect(settings("receiver"));
  EXPECT_EQ(receiver.messages_at_end, 1U);
  EXPECT_TRUE(sender.connection.publish("a/kept", "3", true, 1));
  EXPECT_TRUE(sender.connection.publish("a/passing", "4", false, 0));
  EXPECT_TRUE(sender.connection.publish("a/kept", "", true, 0));
  ASSERT_TRUE(receiver.waitForMessages(4));
  const bool is_told = GetParam(); // a new message says that it is to be kept
  EXPECT_THAT(receiver.messages,
              ElementsAre(Arrival{"a/kept", "1", true, true}, Arrival{"a/kept", "3", is_told, false},
                          Arrival{"a/passing", "4", false, false}, Arrival{"a/kept", "", is_told, false}));
}

TEST_P(BrokerMessagesTest, own_messages_come_back_only_where_the_protocol_cannot_prevent_it) {
  WatchedConnection connection;
  connection.filters = {"a/#"};
  connection.marker_topic = "marker";
  connection.startAndCollect(settings("one"));
  EXPECT_TRUE(connection.connection.publish("a/own", "1", true, 1));
  ASSERT_TRUE(connection.waitUntilSent());
  connection.connection.askForEnd("marker");
  ASSERT_TRUE(process_events_until([&] { return connection.ends == 2; }));
  EXPECT_EQ(connection.messages.size(), GetParam() ? 0U : 1U);
}

TEST_P(BrokerMessagesTest, what_this_client_left_with_the_broker_comes_to_it_later) {
  for (const bool is_first : {true, false}) {
    WatchedConnection connection;
    connection.filters = {"a/#"};
    connection.marker_topic = "marker";
    connection.startAndCollect(settings("one"));
    if (is_first) {
      EXPECT_TRUE(connection.connection.publish("a/own", "1", true, 1));
      connection.connection.stop(60'000);
    } else {
      EXPECT_THAT(connection.messages, ElementsAre(Arrival{"a/own", "1", true, true}));
    }
  }
}

TEST_P(BrokerMessagesTest, the_end_comes_after_all_that_is_kept) {
  constexpr std::size_t topics_of_a_panel = 50;
  constexpr std::size_t panels = 100;
  WatchedConnection sender;
  sender.start(settings("sender"));
  WatchedConnection receiver;
  for (std::size_t panel = 0; panel < panels; ++panel) {
    const QByteArray root = "a/" + QByteArray::number(static_cast<int>(panel));
    receiver.filters += root + "/#";
    for (std::size_t topic = 0; topic < topics_of_a_panel; ++topic)
      EXPECT_TRUE(sender.connection.publish(root + '/' + QByteArray::number(static_cast<int>(topic)), "x", true, 1));
  }
  ASSERT_TRUE(sender.waitUntilSent());
  receiver.marker_topic = "marker";
  receiver.startAndCollect(settings("receiver"));
  EXPECT_EQ(receiver.messages_at_end, panels * topics_of_a_panel);
  EXPECT_TRUE(std::all_of(receiver.messages.begin(), receiver.messages.end(),
                          [](const Arrival &message) { return message.is_old && message.topic != "marker"; }));
}

TEST_P(BrokerMessagesTest, every_byte_of_a_payload_arrives) {
  QByteArray payload(300'000, 'x');
  for (int i = 0; i < payload.size(); ++i)
    payload[i] = static_cast<char>(i * 7);
  WatchedConnection receiver;
  receiver.filters = {"a"};
  receiver.marker_topic = "marker";
  receiver.startAndCollect(settings("receiver"));
  WatchedConnection sender;
  sender.start(settings("sender"));
  EXPECT_TRUE(sender.connection.publish("a", payload, false, 1));
  ASSERT_TRUE(receiver.waitForMessages(1));
  EXPECT_TRUE(receiver.messages[0].payload == payload.toStdString());
}

TEST_P(BrokerMessagesTest, markers_of_others_are_not_taken_for_own_ones_nor_told) {
  WatchedConnection other;
  other.start(settings("other"));
  EXPECT_TRUE(other.connection.publish("marker", "1", true, 1));
  ASSERT_TRUE(other.waitUntilSent());
  WatchedConnection receiver;
  receiver.filters = {"a"};
  receiver.marker_topic = "marker";
  receiver.startAndCollect(settings("receiver"));
  EXPECT_TRUE(other.connection.publish("marker", "2", false, 1));
  EXPECT_TRUE(other.connection.publish("a", "3", false, 1));
  ASSERT_TRUE(receiver.waitForMessages(1));
  EXPECT_THAT(receiver.messages, ElementsAre(Arrival{"a", "3", false, false}));
  EXPECT_EQ(receiver.ends, 1);
}

TEST_P(BrokerMessagesTest, too_large_ones_are_counted_and_not_told) {
  WatchedConnection receiver;
  receiver.filters = {"a"};
  receiver.marker_topic = "marker";
  receiver.startAndCollect(settings("receiver"));
  WatchedConnection sender;
  sender.start(settings("sender"));
  constexpr int most = 8 * 1024 * 1024;
  EXPECT_TRUE(sender.connection.publish("a", QByteArray(most + 1, 'x'), false, 1));
  EXPECT_TRUE(sender.connection.publish("a", QByteArray(most, 'x'), false, 1));
  ASSERT_TRUE(receiver.waitForMessages(1));
  EXPECT_EQ(receiver.messages[0].payload.size(), std::size_t{most});
  EXPECT_EQ(receiver.connection.tooLarge(), 1U);
  receiver.connection.stop(60'000);
  EXPECT_EQ(receiver.connection.tooLarge(), 1U);
}

TEST_P(BrokerMessagesTest, what_is_subscribed_no_more_does_not_come) {
  WatchedConnection receiver;
  receiver.filters = {"a", "b"};
  receiver.marker_topic = "marker";
  receiver.startAndCollect(settings("receiver"));
  receiver.connection.unsubscribe({"a"});
  receiver.connection.askForEnd("marker");
  ASSERT_TRUE(process_events_until([&] { return receiver.ends == 2; }));
  WatchedConnection sender;
  sender.start(settings("sender"));
  EXPECT_TRUE(sender.connection.publish("a", "1", false, 1));
  EXPECT_TRUE(sender.connection.publish("b", "2", false, 1));
  ASSERT_TRUE(receiver.waitForMessages(1));
  EXPECT_THAT(receiver.messages, ElementsAre(Arrival{"b", "2", false, false}));
}

TEST(ManyForOneFilterTest, all_come_with_mqtt_5) {
  const MosquittoBroker broker;
  WatchedConnection sender;
  sender.start(settings_for(broker, "sender"));
  constexpr int count = 5000;
  for (int i = 0; i < count; ++i)
    EXPECT_TRUE(sender.connection.publish("a/" + QByteArray::number(i), "x", true, 1));
  ASSERT_TRUE(sender.waitUntilSent());
  WatchedConnection receiver;
  receiver.filters = {"a/#"};
  receiver.marker_topic = "marker";
  receiver.startAndCollect(settings_for(broker, "receiver"));
  EXPECT_EQ(receiver.messages_at_end, std::size_t{count});
}

} // namespace
} // namespace buttondriver::bridge
