// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/broker/broker_settings.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVector>

namespace buttondriver::bridge {

struct PanelAddress {
  QString host;
  quint16 port = 3003;
  bool operator==(const PanelAddress &other) const { return host == other.host && port == other.port; }
};

/// What the configuration file says, or its defaults.
struct Configuration {
  BrokerSettings broker;
  QByteArray name = "1";              ///< of this bridge, unique at the broker
  QByteArray prefix = "buttondriver"; ///< the first levels of every topic
  /// This bridge drives the panels whose names fall to its share: all if there is one.
  int share = 1; ///< 1 to `shares`
  int shares = 1;
  int statistics_seconds = 10; ///< 0: none are published
  quint16 metrics_port = 0;    ///< page for Prometheus on 127.0.0.1; 0: none
  QByteArray discovery_prefix; ///< empty: no discovery messages
  QMap<QByteArray, PanelAddress> panels;
  QMap<QByteArray, QVector<QByteArray>> groups; ///< names of panels, each once

  /// Whether this bridge drives `panel`, by a hash of its name that every bridge counts alike.
  bool drives(const QByteArray &panel) const;
};

} // namespace buttondriver::bridge
