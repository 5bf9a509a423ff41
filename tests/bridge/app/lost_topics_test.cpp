// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/publishing/lost_topics.h"

#include "bridge/broker/watched_connection.h"

namespace buttondriver::bridge {
namespace {

using buttondriver::test::process_events_until;

class LostTopicsTest : public testing::Test {
protected:
  LostTopicsTest() { client.start(settings_for(broker, "one")); }

  /// Publishes these, each with its own name as payload.
  void publish(LostTopics &lost, const QVector<QByteArray> &topics) {
    for (const QByteArray &topic : topics)
      lost.add("hall", topic);
    lost.publish();
    ASSERT_TRUE(process_events_until([&] { return lost.isEmpty(); }));
  }
  static QByteArray payloadOf(const QByteArray &, const QByteArray &topic) {
    return topic == "gone" ? QByteArray() : "payload of " + topic;
  }

  const buttondriver::test::MosquittoBroker broker;
  WatchedConnection client;
};

TEST_F(LostTopicsTest, come_back_once_and_as_they_were_published) {
  LostTopics lost(client.connection, "p", true, payloadOf);
  publish(lost, {"a", "gone"});
  EXPECT_FALSE(lost.takeEcho("a", "of somebody else"));
  EXPECT_FALSE(lost.takeEcho("b", "payload of a"));
  EXPECT_FALSE(lost.takeEcho("gone", ""));
  EXPECT_TRUE(lost.takeEcho("a", "payload of a"));
  EXPECT_FALSE(lost.takeEcho("a", "payload of a"));
}

TEST_F(LostTopicsTest, that_do_not_come_back_are_not_taken_for_such) {
  LostTopics lost(client.connection, "p", false, payloadOf);
  publish(lost, {"a"});
  EXPECT_FALSE(lost.takeEcho("a", "payload of a"));
}

TEST_F(LostTopicsTest, are_published_once_and_only_a_few_at_a_time) {
  WatchedConnection watcher;
  watcher.filters = {"#"};
  watcher.marker_topic = "marker";
  watcher.startAndCollect(settings_for(broker, "watcher"));
  LostTopics lost(client.connection, "p", false, payloadOf);
  constexpr int count = 1000;
  for (const char *panel : {"hall", "yard"})
    for (int i = 0; i < count; ++i)
      lost.add(panel, QByteArray::number(i));
  lost.publish();
  int most_waiting = 0;
  ASSERT_TRUE(process_events_until([&] {
    most_waiting = std::max(most_waiting, client.connection.waitingMessages());
    return lost.isEmpty();
  }));
  EXPECT_LE(most_waiting, 101);
  ASSERT_TRUE(client.waitUntilSent());
  watcher.connection.askForEnd("marker");
  ASSERT_TRUE(process_events_until([&] { return watcher.ends == 2; }));
  EXPECT_EQ(std::size_t{count}, watcher.messages.size());
}

} // namespace
} // namespace buttondriver::bridge
