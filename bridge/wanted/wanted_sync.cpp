// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/order_record.h"
#include "bridge/wanted/wanted_state.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace buttondriver::bridge {

void WantedState::beginSync() {
  // The connection broke before all had come. What did come is true; what did not come says nothing.
  if (const std::optional<Sync> cut_short = std::exchange(_sync, std::nullopt)) {
    SyncOutcome outcome;
    for (const Entry &entry : cut_short->old.entries()) {
      const auto known = _by_topic.constFind(entry.topic);
      const bool is_same =
          known != _by_topic.constEnd() && (*known)->payload == entry.payload && (*known)->target == entry.target;
      if (!is_same) // what is the same keeps its place
        outcome.has_changed |= set(entry.topic, entry.payload, entry.target, entry.is_retained) != Change::refused;
    }
    applyLive(cut_short->live, outcome);
    _was_cut_short |= outcome.has_changed;
    // What the broker keeps comes again, and may find room then.
    for (const QByteArray &topic : outcome.refused)
      if (!cut_short->live.find(topic)->is_retained)
        _refused_before.append(topic);
  }
  _sync.emplace();
}

WantedState::SyncOutcome WantedState::endSync(const QByteArray &record) {
  SyncOutcome outcome;
  if (!_sync)
    return outcome;
  outcome.refused = std::exchange(_refused_before, {});
  const Sync sync = *std::exchange(_sync, std::nullopt);
  const QByteArray order_before = orderRecord();

  QVector<Entry> entries = merge(sync, !record.isEmpty(), outcome);
  sortBy(record, entries);
  _entries.clear();
  _by_topic.clear();
  _order.clear();
  _bytes = 0;
  for (Entry &entry : entries)
    append(std::move(entry));
  applyLive(sync.live, outcome);

  // The same entries with the same record are drawn alike.
  outcome.has_changed |= orderRecord() != order_before;
  outcome.has_changed |= std::exchange(_was_cut_short, false);
  _broker_record = record;
  _order_may_differ = true;
  return outcome;
}

/// What was known, in its order, and after it what is new. What has come for a topic counts.
QVector<WantedState::Entry> WantedState::merge(const Sync &sync, bool has_memory, SyncOutcome &outcome) {
  QVector<Entry> entries;
  qint64 bytes = 0;
  const auto add = [&](const Entry &entry) {
    const bool has_room = entries.size() < most_topics && bytes + entry.bytes() <= most_bytes;
    if (has_room) {
      entries.append(entry);
      bytes += entry.bytes();
    } else {
      outcome.refused.append(entry.topic);
    }
    return has_room;
  };

  for (const Entry &known : _entries) {
    const Entry *const came = sync.old.find(known.topic);
    if (came != nullptr) {
      const bool is_same = came->payload == known.payload && came->target == known.target;
      outcome.has_changed |= !is_same;
      if (!add(*came) || (!is_same && !came->target.covers(known.target)))
        forget(known.target);
      continue;
    }
    const bool is_live = sync.live.find(known.topic) != nullptr;
    if (!is_live && has_memory && known.is_retained) {
      forget(known.target);
      outcome.has_changed = true;
      continue;
    }
    if (!add(known))
      forget(known.target);
    else if (!is_live && !has_memory)
      outcome.lost_by_broker.append(known);
  }
  for (const Entry &came : sync.old.entries())
    if (!_by_topic.contains(came.topic))
      outcome.has_changed |= add(came);
  return entries;
}

/// Those that the record knows in its order, then the others.
void WantedState::sortBy(const QByteArray &record, QVector<Entry> &entries) const {
  // A record of our own can be older than the order that is known here: the last one may not have got there.
  if (_own_records.contains(qHash(record)))
    return;
  const auto places = read_order_record(record);
  if (!places)
    return;
  const auto place_of = [&](const Entry &entry) { return places->value(entry.topic, std::numeric_limits<int>::max()); };
  std::stable_sort(entries.begin(), entries.end(),
                   [&](const Entry &one, const Entry &other) { return place_of(one) < place_of(other); });
}

void WantedState::applyLive(const TopicCollection &live, SyncOutcome &outcome) {
  for (const Entry &entry : live.entries()) {
    if (entry.payload.isEmpty()) {
      outcome.has_changed |= remove(entry.topic).has_value();
      continue;
    }
    const Change change = set(entry.topic, entry.payload, entry.target, entry.is_retained);
    outcome.has_changed |= change == Change::last || change == Change::redraw;
    if (change == Change::refused)
      outcome.refused.append(entry.topic);
  }
}

} // namespace buttondriver::bridge
