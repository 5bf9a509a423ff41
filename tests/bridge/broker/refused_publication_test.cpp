// SPDX-License-Identifier: Apache-2.0
// What the broker's access list does not let the client write.
#include "support/captured_log.h"
#include "watched_connection.h"

#include <gmock/gmock.h>

using buttondriver::test::CapturedLog;
using buttondriver::test::MosquittoBroker;
using buttondriver::test::process_events_until;
using testing::ElementsAre;
using testing::IsEmpty;

namespace buttondriver::bridge {
namespace {

MosquittoBroker::Options only_a() {
  MosquittoBroker::Options options;
  options.access_list = "topic readwrite a/#\n";
  return options;
}

std::string line_about(const std::string &topic) {
  return "critical: The broker refuses the publication of \"" + topic + "\" with code 135 ";
}

TEST(RefusedPublicationTest, is_logged_once_for_each_topic_of_a_connection) {
  const MosquittoBroker broker(only_a());
  CapturedLog log;
  WatchedConnection connection;
  for (int connects = 1; connects <= 2; ++connects) {
    ASSERT_TRUE(connection.connection.start(settings_for(broker, "one")));
    ASSERT_TRUE(process_events_until([&] { return connection.connects == connects; }));
    for (const char *topic : {"b/order", "a/order", "b/availability", "b/order"})
      EXPECT_TRUE(connection.connection.publish(topic, "x", true, 1));
    ASSERT_TRUE(connection.waitUntilSent());
    EXPECT_THAT(log.take(), ElementsAre(line_about("b/order"), line_about("b/availability")));
  }
}

TEST(RefusedPublicationTest, is_logged_for_so_many_topics_that_somebody_reads_them) {
  const MosquittoBroker broker(only_a());
  CapturedLog log;
  WatchedConnection connection;
  connection.start(settings_for(broker, "one"));
  for (int i = 0; i < 30; ++i)
    EXPECT_TRUE(connection.connection.publish("b/" + QByteArray::number(i), "x", true, 1));
  ASSERT_TRUE(connection.waitUntilSent());
  const auto lines = log.take();
  ASSERT_EQ(lines.size(), 21U);
  EXPECT_EQ(lines[19], line_about("b/19"));
  EXPECT_EQ(lines[20], "critical: The broker refuses more publications, which are not logged ");
}

TEST(RefusedPublicationTest, cannot_be_seen_with_mqtt_3_1_1) {
  const MosquittoBroker broker(only_a());
  CapturedLog log;
  WatchedConnection connection;
  connection.start(settings_for(broker, "one", false));
  EXPECT_TRUE(connection.connection.publish("b", "x", true, 1));
  ASSERT_TRUE(connection.waitUntilSent());
  EXPECT_THAT(log.take(), IsEmpty());
}

// The refusal comes after what the broker had to send before, as the marker itself would.
TEST(RefusedMarkerTest, is_the_end_at_once_and_logged_as_a_refusal_only) {
  const MosquittoBroker broker(only_a());
  constexpr int count = 5000;
  WatchedConnection publisher;
  publisher.start(settings_for(broker, "publisher"));
  for (int i = 0; i < count; ++i)
    EXPECT_TRUE(publisher.connection.publish("a/" + QByteArray::number(i), QByteArray(100, 'x'), true, 1));
  ASSERT_TRUE(publisher.waitUntilSent());
  CapturedLog log;
  WatchedConnection connection; // whose markers are waited for as good as for ever
  connection.filters = {"a/#"};
  connection.marker_topic = "marker";
  connection.startAndCollect(settings_for(broker, "one"));
  EXPECT_EQ(connection.messages_at_end, static_cast<std::size_t>(count));
  EXPECT_THAT(log.take(), ElementsAre(line_about("marker")));
}

TEST(RefusedMarkerTest, is_no_other_publication) {
  MosquittoBroker::Options options = only_a();
  options.access_list += "topic write marker\n";
  const MosquittoBroker broker(options);
  WatchedConnection connection; // waits for a marker that never comes
  connection.marker_topic = "marker";
  connection.start(settings_for(broker, "one"));
  for (int round_trips = 0; round_trips < 5; ++round_trips) {
    EXPECT_TRUE(connection.connection.publish("b", "x", false, 1));
    ASSERT_TRUE(connection.waitUntilSent());
  }
  EXPECT_EQ(connection.ends, 0);
}

} // namespace
} // namespace buttondriver::bridge
