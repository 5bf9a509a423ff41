// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/waiting_commands.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace buttondriver::bridge {

WaitingCommands::Added WaitingCommands::add(const QByteArray &topic, const Command &command, bool is_kept) {
  const auto found = command.newest_wins ? _replaceable.find(topic) : _replaceable.end();
  const bool is_replacing = found != _replaceable.end();
  const qint64 former_bytes = is_replacing && !(*found)->is_of_restoration ? (*found)->command.frame.size() : 0;
  const int former_count = is_replacing && !(*found)->is_of_restoration ? 1 : 0;
  if (count() - _restoring - former_count >= most_commands ||
      _bytes - _restoring_bytes - former_bytes + command.frame.size() > most_bytes)
    return Added::no_room;
  if (!is_replacing) {
    append({topic, command, is_kept, false});
    return Added::yes;
  }

  const Place place = *found;
  if (isOverlappedLater(place, command.target)) {
    take(place);
    append({topic, command, is_kept, false});
  } else {
    // It would never arrive if each one went to the end again.
    _bytes += command.frame.size() - place->command.frame.size();
    if (place->is_of_restoration)
      _restoring_bytes += command.frame.size() - place->command.frame.size();
    place->command = command;
  }
  return Added::replaced;
}

void WaitingCommands::restore(const QVector<TopicCommand> &commands) {
  for (Place place = _items.begin(); place != _items.end();) {
    const Place here = place++;
    if (here->is_kept)
      take(here);
  }
  for (const TopicCommand &command : commands)
    append({command.topic, command.command, true, true});
}

QVector<QByteArray> WaitingCommands::clear() {
  QVector<QByteArray> topics;
  for (const Item &item : _items)
    if (!item.is_kept)
      topics.append(item.topic);
  _items.clear();
  _replaceable.clear();
  _bytes = 0;
  _restoring = 0;
  _restoring_bytes = 0;
  return topics;
}

void WaitingCommands::append(Item item) {
  const bool is_replaceable = item.command.newest_wins;
  _bytes += item.command.frame.size();
  if (item.is_of_restoration) {
    ++_restoring;
    _restoring_bytes += item.command.frame.size();
  }
  _items.push_back(std::move(item));
  if (is_replaceable)
    _replaceable.insert(_items.back().topic, std::prev(_items.end()));
}

void WaitingCommands::take(Place place) {
  const auto found = _replaceable.find(place->topic);
  if (found != _replaceable.end() && *found == place)
    _replaceable.erase(found);
  _bytes -= place->command.frame.size();
  if (place->is_of_restoration) {
    --_restoring;
    _restoring_bytes -= place->command.frame.size();
  }
  _items.erase(place);
}

bool WaitingCommands::isOverlappedLater(Place place, const Target &target) const {
  return std::any_of(std::next(std::list<Item>::const_iterator(place)), _items.end(),
                     [&](const Item &later) { return later.command.target.overlaps(target); });
}

} // namespace buttondriver::bridge
