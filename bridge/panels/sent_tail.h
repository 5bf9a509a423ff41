// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QVector>
#include <QtGlobal>

#include <utility>

namespace buttondriver::bridge {

/// Topics of commands that were handed to a connection and have not left it yet. One thread.
class SentTail {
public:
  /// `end`: how many bytes of the stream had been handed over with it.
  void add(qint64 end, const QByteArray &topic) { _topics.append({end, topic}); }
  /// So many bytes of the stream have left.
  void left(qint64 bytes);
  /// Those that have not, in order; there are none afterwards.
  QVector<QByteArray> take();

private:
  QVector<std::pair<qint64, QByteArray>> _topics;
};

} // namespace buttondriver::bridge
