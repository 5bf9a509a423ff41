// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/command.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

#include <list>
#include <optional>

namespace buttondriver::bridge {

/// What one panel should show: the topics that speak of it, each with its last payload, in the order in which they
/// are drawn. A function of the topics and of nothing else, so that whoever reads the same topics in the same order
/// shows the same.
///
/// The broker keeps payloads (retained messages), but not in which order they came. So that order is published too, as
/// a record, and read again after a restart. It changes only when a topic that overlaps a later one is published.
///
/// Topics are named by what follows the prefix, for example "hall/led/5" or "group/doors/led/5". One thread.
class WantedState {
public:
  /// Bounds for what one panel keeps. A topic beyond them is refused.
  static constexpr int most_topics = 1000;
  static constexpr qint64 most_bytes = 8 * 1024 * 1024;

  struct Entry {
    QByteArray topic;
    QByteArray payload;
    Target target;
    bool is_retained = false; ///< the broker is known to keep it
  };

  enum class Change {
    none,    ///< as it was
    last,    ///< the entry is the last one, or nothing after it overlaps: to carry out its command is enough
    refused, ///< there is no room for it; what was there before stays
  };

  /// `topic` was published with `payload`, which is not empty.
  Change set(const QByteArray &topic, const QByteArray &payload, const Target &target, bool is_retained);

  /// `topic` was taken back. The target that it had, which then has to be drawn again; nothing if there was none.
  std::optional<Target> remove(const QByteArray &topic);

  /// In the order in which they are drawn.
  const std::list<Entry> &entries() const { return _entries; }
  /// Only those of which something is seen in the end, in the order in which they are drawn.
  QVector<const Entry *> visibleEntries() const;

  /// The order of the topics as a record that can be published: JSON, an array of topics.
  QByteArray orderRecord() const;
  /// Whether the record has changed since this was asked last.
  bool takeOrderChange();

  // A connection to a broker begins with all that it keeps, in any order. Between begin and end, set() collects.
  void beginSync();
  /// `record` is the order that the broker keeps; empty when it keeps none. If it does keep one, entries that it no
  /// longer has are taken out, if they were retained. If it keeps none, they stay: the broker has lost what it had.
  /// True when anything is different from what it was before beginSync().
  bool endSync(const QByteArray &record);
  bool isSyncing() const { return _sync.has_value(); }

private:
  struct Sync;
  std::list<Entry> _entries;
  QHash<QByteArray, std::list<Entry>::iterator> _by_topic;
  qint64 _bytes = 0;
  std::optional<QVector<Entry>> _sync;
  bool _order_has_changed = false;
};

} // namespace buttondriver::bridge
