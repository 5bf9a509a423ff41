// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/seen/numbers.h"
#include "bridge/seen/publication.h"

#include <QHash>
#include <QVector>

namespace buttondriver::bridge {

/// The numbers as retained topics, one for each number: PREFIX/PANEL/statistics/ping_ms, reconnects, waiting_commands,
/// waiting_bytes, refused; PREFIX/bridge/NAME/statistics/reconnects, messages, wrong_messages, waiting_messages. Whole
/// numbers but for ping_ms, which has one decimal place and comes with the first answer. One thread.
class Statistics {
public:
  /// `root`: what stands before "/statistics". Only those that differ from what was returned for `root` before.
  QVector<Publication> changesOf(const QByteArray &root, const PanelNumbers &numbers);
  QVector<Publication> changesOf(const QByteArray &root, const BridgeNumbers &numbers);
  /// What takes back all topics of `root`, for which nobody asks any more; nothing if it is not known.
  QVector<Publication> removalOf(const QByteArray &root);
  /// The broker may have lost them: all are returned again.
  void forget();

private:
  struct Number {
    const char *name;
    QByteArray payload; ///< empty: there is nothing to tell yet
  };
  QVector<Publication> changes(const QByteArray &root, QVector<Number> numbers);

  QHash<QByteArray, QVector<Number>> _told; // by root
};

/// The same numbers as a page for Prometheus, in its text format 0.0.4.
QByteArray metrics_text(const BridgeNumbers &bridge, const QVector<PanelRow> &panels);

} // namespace buttondriver::bridge
