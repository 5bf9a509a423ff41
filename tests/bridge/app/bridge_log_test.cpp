// SPDX-License-Identifier: Apache-2.0
// What a bridge logs of a broker.

#include "bridge/app/bridge.h"

#include "bridge/broker/scripted_broker.h"
#include "support/event_loop.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge {
namespace {

using buttondriver::test::process_events_until;
using Manner = ScriptedBroker::Manner;

struct Row {
  const char *name;
  QByteArray answer;
  Manner manner;
  bool is_told_each_time;
};

class BrokerThatGoesTest : public testing::TestWithParam<Row> {};

INSTANTIATE_TEST_SUITE_P(Each, BrokerThatGoesTest,
                         testing::Values(Row{"before_it_has_been_there", QByteArray(), Manner::close_at_once, false},
                                         Row{"after_it_was_there", accepted_5, Manner::answer_and_close, true}),
                         [](const auto &row) { return row.param.name; });

TEST_P(BrokerThatGoesTest, is_logged_once_until_it_has_been_there) {
  const ScriptedBroker broker(GetParam().answer, GetParam().manner);
  Bridge::Times times;
  times.broker.first_pause_ms = 1;
  times.broker.longest_pause_ms = 1;
  Configuration configuration;
  configuration.broker.port = broker.port();
  testing::internal::CaptureStderr();
  {
    Bridge bridge(times);
    EXPECT_TRUE(bridge.start(configuration));
    EXPECT_TRUE(process_events_until([&] { return broker.clients() >= 5; }));
  }
  const QByteArray log = QByteArray::fromStdString(testing::internal::GetCapturedStderr());
  const auto told = log.count("no connection to the broker: the broker has closed the connection\n");
  if (GetParam().is_told_each_time)
    EXPECT_GE(told, 4) << log.constData(); // of the last one, the end may not have come
  else
    EXPECT_EQ(1, told) << log.constData();
}

} // namespace
} // namespace buttondriver::bridge
