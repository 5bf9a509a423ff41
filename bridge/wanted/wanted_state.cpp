// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/wanted_state.h"

#include "bridge/wanted/order_record.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace buttondriver::bridge {

WantedState::Change WantedState::set(const QByteArray &topic, const QByteArray &payload, const Target &target,
                                     bool is_retained, bool is_old) {
  if (topic.size() > longest_topic)
    return Change::refused;
  if (_sync)
    return collect({topic, payload, target, is_retained, 0}, is_old);

  const auto found = _by_topic.constFind(topic);
  if (found == _by_topic.constEnd()) {
    if (!hasRoom(1, qint64{topic.size()} + payload.size()))
      return Change::refused;
    append({topic, payload, target, is_retained, 0});
    return Change::last;
  }

  Entry &entry = **found;
  if (!hasRoom(0, qint64{payload.size()} - entry.payload.size()))
    return Change::refused;
  entry.is_retained |= is_retained;
  const bool is_same = entry.target == target && entry.payload == payload;
  if (is_same && entry.overlapped_by == 0)
    return Change::none;
  const bool may_leave_rest = !is_same && !target.covers(entry.target);
  if (may_leave_rest)
    forget(entry.target);
  _bytes += qint64{payload.size()} - entry.payload.size();
  entry.payload = payload;
  if (entry.overlapped_by > 0 || entry.target != target) {
    _order_may_differ |= _order.takeOut(entry);
    entry.target = target;
    _entries.splice(_entries.end(), _entries, *found);
    _order_may_differ |= _order.append(entry);
  }
  return may_leave_rest ? Change::redraw : Change::last;
}

/// A broker sends what it keeps for a topic before what is published then. So what it says that it keeps has just been
/// published when the topic has come before.
WantedState::Change WantedState::collect(Entry entry, bool is_old) {
  const Entry *const live = _sync->live.find(entry.topic);
  const Entry *const old = _sync->old.find(entry.topic);
  const bool is_first = live == nullptr && old == nullptr;
  if (is_old && !is_first && entry.topic.startsWith("group/")) {
    const bool is_taken_back = live != nullptr && live->payload.isEmpty();
    const QByteArray known = old != nullptr ? old->payload : payloadOf(entry.topic);
    if (!is_taken_back && entry.payload == known)
      return Change::none;
  }
  TopicCollection &collection = is_old && is_first ? _sync->old : _sync->live;
  return collection.put(std::move(entry)) ? Change::none : Change::refused;
}

void WantedState::stay(const QByteArray &topic) {
  const auto found = _by_topic.constFind(topic);
  if (_sync && found != _by_topic.constEnd() && !_sync->old.find(topic))
    _sync->old.put(**found);
}

std::optional<Target> WantedState::remove(const QByteArray &topic) {
  if (_sync) {
    if (_by_topic.contains(topic) || _sync->old.find(topic) != nullptr || _sync->live.find(topic) != nullptr)
      _sync->live.put({topic, {}, {}, false, 0});
    return std::nullopt;
  }
  const auto found = _by_topic.constFind(topic);
  if (found == _by_topic.constEnd())
    return std::nullopt;
  const Target target = (*found)->target;
  forget(target);
  takeOut(*found);
  return target;
}

bool WantedState::removeAll(const QByteArray &beginning) {
  if (_sync) {
    _sync->old.removeAll(beginning);
    _sync->live.removeAll(beginning);
  }
  bool has_changed = false;
  for (auto entry = _entries.begin(); entry != _entries.end();) {
    const Place here = entry++;
    if (!here->topic.startsWith(beginning))
      continue;
    forget(here->target);
    takeOut(here);
    has_changed = true;
  }
  return has_changed;
}

QByteArray WantedState::payloadOf(const QByteArray &topic) const {
  const auto found = _by_topic.constFind(topic);
  return found == _by_topic.constEnd() ? QByteArray() : (*found)->payload;
}

bool WantedState::isRetained(const QByteArray &topic) const {
  const auto found = _by_topic.constFind(topic);
  return (_sync && _sync->old.find(topic)) || (found != _by_topic.constEnd() && (*found)->is_retained);
}

QVector<const WantedState::Entry *> WantedState::visibleEntries() const {
  QVector<const Entry *> visible;
  for (auto entry = _entries.begin(); entry != _entries.end(); ++entry) {
    const auto covers_entry = [&](const Entry &later) { return later.target.covers(entry->target); };
    if (entry->overlapped_by == 0 || std::none_of(std::next(entry), _entries.end(), covers_entry))
      visible.append(&*entry);
  }
  return visible;
}

QByteArray WantedState::orderRecord() const {
  QVector<QByteArray> topics;
  for (const Entry &entry : _entries)
    if (entry.overlapped_by > 0)
      topics.append(entry.topic);
  return make_order_record(topics);
}

bool WantedState::takeOrderChange() {
  if (_sync || !std::exchange(_order_may_differ, false))
    return false;
  const QByteArray record = orderRecord();
  // Where nothing is wanted, a record is not missed.
  if (record == _broker_record || (_broker_record.isEmpty() && _entries.empty()))
    return false;
  _broker_record = record;
  constexpr int most_own_records = 8;
  if (_own_records.size() == most_own_records)
    _own_records.removeFirst();
  _own_records.append(qHash(record));
  return true;
}

void WantedState::forgetOrderRecord() {
  _broker_record.clear();
  _order_may_differ = true;
}

TargetSet WantedState::takeToRedraw() { return std::exchange(_to_redraw, {}); }

TargetSet WantedState::takeToClear() {
  _to_redraw = {};
  _being_cleared.add(std::exchange(_to_clear, {}));
  return _being_cleared;
}

bool WantedState::hasRoom(int topics, qint64 bytes) const {
  return _by_topic.size() + topics <= most_topics && _bytes + bytes <= most_bytes;
}

void WantedState::append(Entry entry) {
  _bytes += entry.bytes();
  _entries.push_back(std::move(entry));
  _by_topic.insert(_entries.back().topic, std::prev(_entries.end()));
  // The broker has to have a record, if an empty one, from the first topic on.
  _order_may_differ |= _order.append(_entries.back()) || _broker_record.isEmpty();
}

void WantedState::takeOut(Place place) {
  _order_may_differ |= _order.takeOut(*place);
  _bytes -= place->bytes();
  _by_topic.remove(place->topic);
  _entries.erase(place);
}

void WantedState::forget(const Target &target) {
  _to_redraw.add(target);
  _to_clear.add(target);
}

} // namespace buttondriver::bridge
