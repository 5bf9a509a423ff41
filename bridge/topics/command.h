// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/target.h"

#include <QByteArray>

namespace buttondriver::bridge {

/// One command for a panel, made of a topic and its payload.
struct Command {
  QByteArray frame; ///< what goes to the panel: the length, then the message
  Target target;
  /// Of several commands of the same topic that wait for a panel, only the last one has to arrive: those of lamps and
  /// of whole lines.
  bool newest_wins = false;
};

} // namespace buttondriver::bridge
