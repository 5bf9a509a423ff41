// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/target.h"

#include <QByteArray>

namespace buttondriver::bridge {

/// A topic that speaks of a panel, with its last payload.
struct WantedEntry {
  QByteArray topic;
  QByteArray payload;
  Target target;
  bool is_retained = false; ///< the broker is known to keep the topic
  int overlapped_by = 0;    ///< how many later ones it overlaps: kept by DrawingOrder

  qint64 bytes() const { return qint64{topic.size()} + payload.size(); }
};

} // namespace buttondriver::bridge
