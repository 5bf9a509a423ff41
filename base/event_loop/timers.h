// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QAbstractEventDispatcher>
#include <QList>

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

class QObject;

namespace buttondriver {

/// The timers of an event loop, and when each of them is due. A program has a few. All are as precise as the clock. One
/// that is late fires once for all the times that it has missed. For one thread.
class Timers {
public:
  using Time = std::chrono::steady_clock::time_point;
  using Info = QAbstractEventDispatcher::TimerInfo;

  /// Its first time is `interval_ms` after `now`.
  void add(int id, qint64 interval_ms, Qt::TimerType type, QObject *object, Time now);
  /// False when there was none.
  bool remove(int id);
  bool removeAllOf(const QObject *object);
  QList<Info> allOf(const QObject *object) const;
  /// Whole milliseconds until it is due, 0 when it is late, -1 when there is none.
  int remaining(int id, Time now) const;

  /// When the next one is due.
  std::optional<Time> next() const;
  /// Sends each one that is due at `now` its event, once, in the order in which they were due. Those may add and remove
  /// any. Returns how many were sent.
  int fire(Time now);

private:
  struct Timer {
    int id;
    std::chrono::milliseconds interval;
    Qt::TimerType type;
    QObject *object;
    Time due;
    std::uint64_t round; // in which it fired last
    bool is_firing;      // not again, in an event loop within its event
  };

  std::vector<Timer>::iterator find(int id);
  Timer *firstDue(Time now, std::uint64_t round);

  std::vector<Timer> _timers;
  std::uint64_t _last_round = 0;
};

} // namespace buttondriver
