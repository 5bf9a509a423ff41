// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/seen/numbers.h"
#include "bridge/seen/publication.h"

#include <QHash>
#include <QVector>

namespace buttondriver::bridge {

/// The numbers as retained topics, one for each number: PREFIX/PANEL/statistics/ping_ms, reconnects, waiting_commands,
/// waiting_bytes, refused; PREFIX/bridge/NAME/statistics/... One thread.
class Statistics {
public:
  /// `root`: what stands before "/statistics". Only those that differ from what was returned for `root` before.
  QVector<Publication> changesOf(const QByteArray &root, const PanelNumbers &numbers);
  QVector<Publication> changesOf(const QByteArray &root, const BridgeNumbers &numbers);
  /// The broker may have lost them: all are returned again.
  void forget();

private:
  QHash<QByteArray, QByteArray> _last;
};

/// The same numbers as a page for Prometheus, in its text format 0.0.4.
QByteArray metrics_text(const BridgeNumbers &bridge, const QVector<PanelRow> &panels);

} // namespace buttondriver::bridge
