// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <vector>

namespace buttondriver::buttonctl {

/// What the virtual panel still knows of the messages, or of the log's lines, that came after a certain one.
struct PanelFeed {
  enum class Kind { messages, log };

  bool is_known = true;             ///< false for messages when another program drives the panel
  qint64 last = 0;                  ///< the number of the newest one there was
  qint64 dropped = 0;               ///< how many came before `entries` and are not known any more
  std::vector<QJsonObject> entries; ///< the oldest first; docs/simulator-http.md has their members
};

/// "/messages.json" or "/log.json"
QString path_of(PanelFeed::Kind kind);

/// Reads the answer to a request for that path. A failure says what is wrong with it.
Outcome<PanelFeed> parse_panel_feed(PanelFeed::Kind kind, const QByteArray &json);

} // namespace buttondriver::buttonctl
