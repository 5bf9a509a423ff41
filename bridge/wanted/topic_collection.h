// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/wanted/wanted_entry.h"

#include <QHash>

#include <list>

namespace buttondriver::bridge {

/// Topics as they come, each once: the last payload, at the place of its last coming. One thread.
class TopicCollection {
public:
  TopicCollection(int most_topics, qint64 most_bytes) : _most_topics(most_topics), _most_bytes(most_bytes) {}

  /// False when there is no room for it; what was there before stays. An entry without a payload always has room.
  bool put(WantedEntry entry);
  /// Takes out all whose topic begins with `beginning`.
  void removeAll(const QByteArray &beginning);
  /// Null when it has not come. Holds until the next put() or removeAll().
  const WantedEntry *find(const QByteArray &topic) const;
  const std::list<WantedEntry> &entries() const { return _entries; }

private:
  const int _most_topics;
  const qint64 _most_bytes;
  std::list<WantedEntry> _entries;
  QHash<QByteArray, std::list<WantedEntry>::iterator> _by_topic;
  qint64 _bytes = 0;
};

} // namespace buttondriver::bridge
