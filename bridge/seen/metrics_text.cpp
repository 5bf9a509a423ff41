// SPDX-License-Identifier: Apache-2.0
#include "bridge/seen/statistics.h"

namespace buttondriver::bridge {

namespace {

enum class Kind { gauge, counter };

template <class Numbers> struct Metric {
  const char *name; ///< with its unit; that of a counter ends in _total
  Kind kind;
  const char *help;                     ///< without backslashes and ends of line
  QByteArray (*value)(const Numbers &); ///< empty: there is none yet
};

template <class Number> QByteArray text_of(Number number) { return QByteArray::number(number); }
QByteArray text_of(bool is_so) { return is_so ? "1" : "0"; }

const Metric<BridgeNumbers> bridge_metrics[] = {
    {"buttondriver_bridge_broker_connected", Kind::gauge, "Whether there is a connection to the broker.",
     [](const BridgeNumbers &bridge) { return text_of(bridge.is_connected); }},
    {"buttondriver_bridge_broker_reconnects_total", Kind::counter,
     "Connections to the broker that came up after the first one.",
     [](const BridgeNumbers &bridge) { return text_of(bridge.broker_reconnects); }},
    {"buttondriver_bridge_messages_total", Kind::counter, "Messages that came from the broker.",
     [](const BridgeNumbers &bridge) { return text_of(bridge.messages); }},
    {"buttondriver_bridge_wrong_messages_total", Kind::counter,
     "Messages that came from the broker and were answered with an error.",
     [](const BridgeNumbers &bridge) { return text_of(bridge.wrong_messages); }},
    {"buttondriver_bridge_waiting_messages", Kind::gauge, "Messages that wait to be sent to the broker.",
     [](const BridgeNumbers &bridge) { return text_of(bridge.waiting_for_broker); }},
};

const Metric<PanelNumbers> panel_metrics[] = {
    {"buttondriver_panel_connected", Kind::gauge, "Whether there is a connection to the panel.",
     [](const PanelNumbers &panel) { return text_of(panel.is_up); }},
    {"buttondriver_panel_ping_seconds", Kind::gauge, "How long the last ping took to come back from the panel.",
     [](const PanelNumbers &panel) { return panel.ping_seconds < 0 ? QByteArray() : text_of(panel.ping_seconds); }},
    {"buttondriver_panel_reconnects_total", Kind::counter, "Connections to the panel that came up after the first one.",
     [](const PanelNumbers &panel) { return text_of(panel.reconnects); }},
    {"buttondriver_panel_sent_commands_total", Kind::counter, "Commands that were sent to the panel.",
     [](const PanelNumbers &panel) { return text_of(panel.sent); }},
    {"buttondriver_panel_replaced_commands_total", Kind::counter,
     "Commands that a newer one of their topic took the place of while they waited.",
     [](const PanelNumbers &panel) { return text_of(panel.replaced); }},
    {"buttondriver_panel_refused_commands_total", Kind::counter, "Commands for which there was no room.",
     [](const PanelNumbers &panel) { return text_of(panel.refused); }},
    {"buttondriver_panel_waiting_commands", Kind::gauge, "Commands that wait to be sent to the panel.",
     [](const PanelNumbers &panel) { return text_of(panel.waiting_commands); }},
    {"buttondriver_panel_waiting_bytes", Kind::gauge, "Bytes of the commands that wait to be sent to the panel.",
     [](const PanelNumbers &panel) { return text_of(panel.waiting_bytes); }},
};

template <class Numbers> QByteArray head_of(const Metric<Numbers> &metric) {
  return QByteArray("# HELP ") + metric.name + ' ' + metric.help + "\n# TYPE " + metric.name +
         (metric.kind == Kind::counter ? " counter\n" : " gauge\n");
}

/// As it stands between the quotes of a label.
QByteArray escaped(QByteArray value) { return value.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n"); }

} // namespace

QByteArray metrics_text(const BridgeNumbers &bridge, const QVector<PanelRow> &panels) {
  QByteArray text;
  for (const auto &metric : bridge_metrics)
    text += head_of(metric) + metric.name + ' ' + metric.value(bridge) + '\n';

  QVector<QByteArray> labels;
  labels.reserve(panels.size());
  for (const PanelRow &panel : panels)
    labels.append("{panel=\"" + escaped(panel.name) + "\"} ");
  for (const auto &metric : panel_metrics) {
    text += head_of(metric);
    for (int i = 0; i < panels.size(); ++i) {
      const QByteArray value = metric.value(panels.at(i).numbers);
      if (!value.isEmpty())
        text += metric.name + labels.at(i) + value + '\n';
    }
  }
  return text;
}

} // namespace buttondriver::bridge
