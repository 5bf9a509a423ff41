// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QSet>

namespace buttondriver::bridge {

/// Logs what the broker of one connection does not take: each topic once, and not more topics than somebody reads.
/// One thread.
class Refusals {
public:
  static constexpr int most_topics = 20;

  /// `code`: the broker's, 128 or more.
  void take(const QByteArray &topic, int code);

private:
  QSet<QByteArray> _topics; ///< that are logged
  bool _are_more = false;   ///< and that is logged
};

} // namespace buttondriver::bridge
