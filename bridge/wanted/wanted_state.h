// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/wanted/drawing_order.h"
#include "bridge/wanted/target_set.h"
#include "bridge/wanted/topic_collection.h"
#include "bridge/wanted/wanted_entry.h"

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
  static constexpr qint64 most_bytes = 8 * 1024 * 1024; ///< of topics and payloads
  static constexpr int longest_topic = 512;

  using Entry = WantedEntry;

  enum class Change {
    none,    ///< as it was; or collected, between beginSync() and endSync()
    last,    ///< the entry is the last one, or nothing after it overlaps: to carry out its command is enough
    redraw,  ///< its former payload may still be seen beside the new one: redraw_list() or restore_list() is needed
    refused, ///< there is no room for it; what was there before stays
  };

  /// `topic` was published with `payload`, which is not empty. `is_old`: the broker had it before the subscription;
  /// it counts only between beginSync() and endSync().
  Change set(const QByteArray &topic, const QByteArray &payload, const Target &target, bool is_retained,
             bool is_old = false);

  /// What the broker keeps for `topic` cannot be shown: what is known of it stays, also over endSync().
  void stay(const QByteArray &topic);

  /// `topic` was taken back. The target that it had, which then has to be drawn again: redraw_list(), restore_list().
  /// Nothing if there was none, and between beginSync() and endSync(), when it is only collected.
  std::optional<Target> remove(const QByteArray &topic);

  /// Takes back all topics that begin with `beginning`, also between beginSync() and endSync(): nobody asks the broker
  /// for them any more; those that have been collected as well. False if none was wanted.
  bool removeAll(const QByteArray &beginning);

  /// The last payload of `topic`; empty if it is not wanted.
  QByteArray payloadOf(const QByteArray &topic) const;
  /// Whether the broker is known to keep `topic`.
  bool isRetained(const QByteArray &topic) const;

  /// In the order in which they are drawn.
  const std::list<Entry> &entries() const { return _entries; }
  /// Only those of which something is seen in the end, in the order in which they are drawn. The pointers hold until
  /// the next call that is not const.
  QVector<const Entry *> visibleEntries() const;

  /// The order as a record that can be published: the topics, a JSON array, of the entries that overlap a later one.
  /// All others may come after them, in any order.
  QByteArray orderRecord() const;
  /// Whether the record has to be published, because it differs from the one that the broker keeps. Costs little when
  /// nothing has changed, else as much as the record; who gets very many publications asks now and then only.
  bool takeOrderChange();
  /// The broker does not keep the record any more.
  void forgetOrderRecord();

  // A connection to a broker begins with all that it keeps, in any order. Between begin and end, set() and remove()
  // collect. What is not old is newer than all that is; so is what comes for a topic again, old or not, but for what a
  // group keeps, which comes to all of its panels again when one more joins it. A second beginSync() begins again: what
  // has come until then counts, and nothing is missing because it has not come.
  void beginSync();
  struct SyncOutcome {
    bool has_changed = false; ///< anything that can be seen differs from what it was before beginSync()
    /// What the broker did not send although it is wanted, when it has lost its memory: to be published again. Not all
    /// of them have been retained.
    QVector<Entry> lost_by_broker;
    QVector<QByteArray> refused; ///< topics for which there is no room
  };
  /// `record` is the order that the broker keeps; empty when it keeps none. If it does keep one, entries that it no
  /// longer has are taken out, if they were retained. If it keeps none, they stay: the broker has lost what it had.
  ///
  /// A record that cannot be read says nothing of the order, so all stays where it is. But a broker that has one has
  /// not lost its memory.
  SyncOutcome endSync(const QByteArray &record);
  bool isSyncing() const { return _sync.has_value(); }

  // What was drawn on the panel and is not wanted any more.
  /// Nobody knows what the panel shows: all of it has to be cleared when it is restored, but for what is wanted.
  void forgetPanel() { _to_clear = TargetSet::wholePanel(); }
  /// Since this was called last: places that have to be drawn again.
  TargetSet takeToRedraw();
  /// Places that have to be cleared when the panel is restored. They are returned again until confirmRestored().
  TargetSet takeToClear();
  /// What takeToClear() returned last has been cleared.
  void confirmRestored() { _being_cleared = {}; }

private:
  struct Sync {
    TopicCollection old{most_topics, most_bytes};
    TopicCollection live{most_topics, most_bytes}; // an empty payload takes back
  };
  using Place = std::list<Entry>::iterator;

  Change collect(Entry entry, bool is_old);
  bool hasRoom(int topics, qint64 bytes) const;
  void append(Entry entry);
  void takeOut(Place place);
  void forget(const Target &target);
  QVector<Entry> merge(const Sync &sync, bool has_memory, SyncOutcome &outcome);
  void sortBy(const QByteArray &record, QVector<Entry> &entries) const;
  void applyLive(const TopicCollection &live, SyncOutcome &outcome);

  std::list<Entry> _entries;
  QHash<QByteArray, Place> _by_topic;
  qint64 _bytes = 0;
  DrawingOrder _order;
  std::optional<Sync> _sync;

  bool _order_may_differ = false;
  bool _was_cut_short = false; // a sync before the present one has changed something that the panel was not told
  QVector<QByteArray> _refused_before;                 // by such a sync, and not told yet
  QByteArray _broker_record;                           // as far as is known; empty: none
  QVector<decltype(qHash(QByteArray()))> _own_records; // hashes of the last ones that were to be published
  TargetSet _to_redraw;
  TargetSet _to_clear;
  TargetSet _being_cleared;
};

} // namespace buttondriver::bridge
