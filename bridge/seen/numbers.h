// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/panels/panel_numbers.h"

#include <QByteArray>
#include <QVector>

namespace buttondriver::bridge {

/// One panel as it is seen from outside.
struct PanelRow {
  QByteArray name;
  PanelNumbers numbers;
};

/// The bridge itself, since its start but for those that say otherwise.
struct BridgeNumbers {
  bool is_connected = false; ///< to the broker, now
  quint64 broker_reconnects = 0;
  quint64 messages = 0;       ///< that came from the broker
  quint64 wrong_messages = 0; ///< those of them that were answered with an error
  int waiting_for_broker = 0; ///< messages that wait to be sent to it, now
};

} // namespace buttondriver::bridge
