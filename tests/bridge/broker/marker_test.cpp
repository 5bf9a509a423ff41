// SPDX-License-Identifier: Apache-2.0
#include "marker_broker.h"
#include "support/captured_log.h"
#include "watched_connection.h"

#include <gmock/gmock.h>

#include <QTimer>

using buttondriver::test::CapturedLog;
using buttondriver::test::process_events_until;
using testing::ElementsAre;
using testing::IsEmpty;

namespace buttondriver::bridge {

// Twice: what was missed before counts no more.
TEST(MarkerTest, is_sent_up_to_three_times_until_it_comes_back_itself_and_no_more_then) {
  int markers = 0;
  const MarkerBroker broker([&](const QByteArray &payload) {
    ++markers;
    if (markers % 3 == 1)
      return QByteArray();
    return markers % 3 == 2 ? QByteArray("somebody else's") : payload;
  });
  BrokerSettings settings;
  settings.port = broker.port();
  settings.client_id = "one";
  settings.is_mqtt_5 = false;
  BrokerConnection::Times times = short_times();
  times.quiet_ms = 500; // far more than it takes to answer
  CapturedLog log;
  WatchedConnection connection(times);
  connection.filters = {"a/#"};
  connection.start(settings);
  for (const int sent : {3, 6}) {
    const int ends_before = connection.ends;
    connection.connection.askForEnd("marker");
    ASSERT_TRUE(process_events_until([&] { return connection.ends > ends_before; }));
    EXPECT_EQ(markers, sent);
  }
  bool is_later = false; // nothing tells that nothing comes
  QTimer::singleShot(times.quiet_ms * 3 / 2, [&] { is_later = true; });
  ASSERT_TRUE(process_events_until([&] { return is_later; }));
  EXPECT_EQ(markers, 6);
  EXPECT_EQ(connection.ends, 2);
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST(MarkerTest, that_never_comes_back_ends_the_wait_also_when_others_never_stop_and_is_logged_once) {
  int markers = 0;
  bool has_recovered = false;
  MarkerBroker broker([&](const QByteArray &payload) {
    ++markers;
    return has_recovered ? payload : QByteArray();
  });
  BrokerSettings settings;
  settings.port = broker.port();
  settings.client_id = "one";
  settings.is_mqtt_5 = false;
  BrokerConnection::Times times = short_times();
  times.quiet_ms = 100;
  QTimer others;
  QObject::connect(&others, &QTimer::timeout, [&] { broker.send("a/b", "c"); });
  others.start(5);
  CapturedLog log;
  WatchedConnection connection(times);
  connection.filters = {"a/#"};
  connection.marker_topic = "marker";
  connection.startAndCollect(settings);
  EXPECT_THAT(log.take(),
              ElementsAre("critical: The broker does not send \"marker\" back: what it keeps may be incomplete "));
  others.stop();
  // Now it is known: the next marker is not sent again. After one that came back, it is.
  struct Row {
    bool has_recovered;
    int sent;
    std::size_t lines;
  };
  for (const Row row : {Row{false, 1, 0}, Row{true, 1, 0}, Row{false, 3, 1}}) {
    has_recovered = row.has_recovered;
    const int markers_before = markers;
    const int ends_before = connection.ends;
    connection.connection.askForEnd("marker");
    ASSERT_TRUE(process_events_until([&] { return connection.ends > ends_before; }));
    EXPECT_EQ(markers, markers_before + row.sent);
    EXPECT_EQ(log.take().size(), row.lines);
  }
}

} // namespace buttondriver::bridge
