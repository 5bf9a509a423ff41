// SPDX-License-Identifier: Apache-2.0
#include "marker_broker.h"
#include "support/captured_log.h"
#include "watched_connection.h"

#include <gmock/gmock.h>

#include <QTimer>

using buttondriver::test::CapturedLog;
using buttondriver::test::process_events_until;
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

} // namespace buttondriver::bridge
