// SPDX-License-Identifier: Apache-2.0
#include "bridge/seen/statistics.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge {
namespace {

// By hand, after the description of the text format 0.0.4; "promtool check metrics" has nothing to say to it.
const char *const two_panels =
    R"(# HELP buttondriver_bridge_broker_connected Whether there is a connection to the broker.
# TYPE buttondriver_bridge_broker_connected gauge
buttondriver_bridge_broker_connected 1
# HELP buttondriver_bridge_broker_reconnects_total Connections to the broker that came up after the first one.
# TYPE buttondriver_bridge_broker_reconnects_total counter
buttondriver_bridge_broker_reconnects_total 1
# HELP buttondriver_bridge_messages_total Messages that came from the broker.
# TYPE buttondriver_bridge_messages_total counter
buttondriver_bridge_messages_total 2
# HELP buttondriver_bridge_wrong_messages_total Messages that came from the broker and were answered with an error.
# TYPE buttondriver_bridge_wrong_messages_total counter
buttondriver_bridge_wrong_messages_total 3
# HELP buttondriver_bridge_waiting_messages Messages that wait to be sent to the broker.
# TYPE buttondriver_bridge_waiting_messages gauge
buttondriver_bridge_waiting_messages 4
# HELP buttondriver_panel_connected Whether there is a connection to the panel.
# TYPE buttondriver_panel_connected gauge
buttondriver_panel_connected{panel="hall"} 1
buttondriver_panel_connected{panel="a\"b\\c\nd"} 0
# HELP buttondriver_panel_ping_seconds How long the last ping took to come back from the panel.
# TYPE buttondriver_panel_ping_seconds gauge
buttondriver_panel_ping_seconds{panel="hall"} 0.0125
# HELP buttondriver_panel_reconnects_total Connections to the panel that came up after the first one.
# TYPE buttondriver_panel_reconnects_total counter
buttondriver_panel_reconnects_total{panel="hall"} 5
buttondriver_panel_reconnects_total{panel="a\"b\\c\nd"} 0
# HELP buttondriver_panel_sent_commands_total Commands that were sent to the panel.
# TYPE buttondriver_panel_sent_commands_total counter
buttondriver_panel_sent_commands_total{panel="hall"} 18446744073709551615
buttondriver_panel_sent_commands_total{panel="a\"b\\c\nd"} 0
# HELP buttondriver_panel_replaced_commands_total Commands that a newer one of their topic took the place of while they waited.
# TYPE buttondriver_panel_replaced_commands_total counter
buttondriver_panel_replaced_commands_total{panel="hall"} 7
buttondriver_panel_replaced_commands_total{panel="a\"b\\c\nd"} 0
# HELP buttondriver_panel_refused_commands_total Commands for which there was no room.
# TYPE buttondriver_panel_refused_commands_total counter
buttondriver_panel_refused_commands_total{panel="hall"} 8
buttondriver_panel_refused_commands_total{panel="a\"b\\c\nd"} 0
# HELP buttondriver_panel_waiting_commands Commands that wait to be sent to the panel.
# TYPE buttondriver_panel_waiting_commands gauge
buttondriver_panel_waiting_commands{panel="hall"} 9
buttondriver_panel_waiting_commands{panel="a\"b\\c\nd"} 0
# HELP buttondriver_panel_waiting_bytes Bytes of the commands that wait to be sent to the panel.
# TYPE buttondriver_panel_waiting_bytes gauge
buttondriver_panel_waiting_bytes{panel="hall"} 8388608
buttondriver_panel_waiting_bytes{panel="a\"b\\c\nd"} 0
)";

TEST(MetricsTextTest, has_each_metric_once_with_a_line_for_each_panel) {
  BridgeNumbers bridge;
  bridge.is_connected = true;
  bridge.broker_reconnects = 1;
  bridge.messages = 2;
  bridge.wrong_messages = 3;
  bridge.waiting_for_broker = 4;
  PanelNumbers hall;
  hall.is_up = true;
  hall.ping_seconds = 0.0125;
  hall.reconnects = 5;
  hall.sent = 18446744073709551615U;
  hall.replaced = 7;
  hall.refused = 8;
  hall.waiting_commands = 9;
  hall.waiting_bytes = 8388608;
  // The second one has not answered a ping yet.
  EXPECT_STREQ(metrics_text(bridge, {{"hall", hall}, {"a\"b\\c\nd", {}}}).constData(), two_panels);
}

TEST(MetricsTextTest, names_the_metrics_of_panels_also_when_there_is_none) {
  const QByteArray text = metrics_text({}, {});
  EXPECT_TRUE(text.contains("\nbuttondriver_bridge_messages_total 0\n")) << text.constData();
  EXPECT_TRUE(text.endsWith("# TYPE buttondriver_panel_waiting_bytes gauge\n")) << text.constData();
}

} // namespace
} // namespace buttondriver::bridge
