// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/topic_collection.h"

#include <iterator>
#include <utility>

namespace buttondriver::bridge {

bool TopicCollection::put(WantedEntry entry) {
  const auto found = _by_topic.constFind(entry.topic);
  const bool is_new = found == _by_topic.constEnd();
  const qint64 bytes = _bytes + entry.bytes() - (is_new ? 0 : (*found)->bytes());
  const bool has_room = bytes <= _most_bytes && (!is_new || _by_topic.size() < _most_topics);
  if (!has_room && !entry.payload.isEmpty())
    return false;
  if (!is_new)
    _entries.erase(*found);
  _bytes = bytes;
  _entries.push_back(std::move(entry));
  _by_topic.insert(_entries.back().topic, std::prev(_entries.end()));
  return true;
}

void TopicCollection::removeAll(const QByteArray &beginning) {
  for (auto entry = _entries.begin(); entry != _entries.end();) {
    const auto here = entry++;
    if (!here->topic.startsWith(beginning))
      continue;
    _bytes -= here->bytes();
    _by_topic.remove(here->topic);
    _entries.erase(here);
  }
}

const WantedEntry *TopicCollection::find(const QByteArray &topic) const {
  const auto found = _by_topic.constFind(topic);
  return found == _by_topic.constEnd() ? nullptr : &**found;
}

} // namespace buttondriver::bridge
