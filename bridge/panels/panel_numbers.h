// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

namespace buttondriver::bridge {

/// Numbers of one panel, all since the start of the program but for those that say otherwise.
struct PanelNumbers {
  bool is_up = false;       ///< now
  double ping_seconds = -1; ///< of the last answer; negative: none yet
  quint64 reconnects = 0;   ///< connections that came up after the first one
  quint64 sent = 0;         ///< commands that were handed to the connection
  quint64 replaced = 0;     ///< commands that a newer one of their topic took the place of
  quint64 refused = 0;      ///< commands for which there was no room
  int waiting_commands = 0; ///< now
  qint64 waiting_bytes = 0; ///< now
};

} // namespace buttondriver::bridge
