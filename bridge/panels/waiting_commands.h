// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/topic_command.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

#include <list>

namespace buttondriver::bridge {

/// Commands that wait for a connection, in order, and those of a restoration among them. One thread.
class WaitingCommands {
public:
  /// Of commands that are added; those of a restoration do not count.
  static constexpr int most_commands = 1000;
  static constexpr qint64 most_bytes = 8 * 1024 * 1024;

  enum class Added {
    yes,
    replaced, ///< in place of one of the same topic
    no_room,
  };
  /// A command of which the newest wins takes the place of a waiting one of its topic; it goes to the end when one that
  /// overlaps it waits behind that.
  Added add(const QByteArray &topic, const Command &command, bool is_kept);
  /// What is kept goes, and `commands` come after what is left.
  void restore(const QVector<TopicCommand> &commands);
  /// Nothing waits any more. Returns the topics of what was not kept.
  QVector<QByteArray> clear();

  struct Item {
    QByteArray topic;
    Command command;
    bool is_kept = false;
    bool is_of_restoration = false;
  };
  bool isEmpty() const { return _items.empty(); }
  const Item &first() const { return _items.front(); }
  void removeFirst() { take(_items.begin()); }

  /// All that wait, also of a restoration.
  int count() const { return static_cast<int>(_items.size()); }
  qint64 bytes() const { return _bytes; }
  /// Whether any of the last restoration still waits.
  bool isRestoring() const { return _restoring > 0; }

private:
  using Place = std::list<Item>::iterator;
  void append(Item item);
  void take(Place place);
  bool isOverlappedLater(Place place, const Target &target) const;

  std::list<Item> _items;
  QHash<QByteArray, Place> _replaceable; // by topic
  qint64 _bytes = 0;
  int _restoring = 0;
  qint64 _restoring_bytes = 0;
};

} // namespace buttondriver::bridge
