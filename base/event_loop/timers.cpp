// SPDX-License-Identifier: Apache-2.0
#include "event_loop/timers.h"

#include <QCoreApplication>
#include <QTimerEvent>

#include <algorithm>
#include <limits>

namespace buttondriver {

void Timers::add(int id, qint64 interval_ms, Qt::TimerType type, QObject *object, Time now) {
  const std::chrono::milliseconds interval(interval_ms);
  // Not in the round in which it comes: one that adds another each time would never let that end.
  _timers.push_back({id, interval, type, object, now + interval, _last_round, false});
}

bool Timers::remove(int id) {
  const auto place = find(id);
  if (place == _timers.end())
    return false;
  _timers.erase(place);
  return true;
}

bool Timers::removeAllOf(const QObject *object) {
  const auto end =
      std::remove_if(_timers.begin(), _timers.end(), [object](const Timer &timer) { return timer.object == object; });
  const bool is_any = end != _timers.end();
  _timers.erase(end, _timers.end());
  return is_any;
}

QList<Timers::Info> Timers::allOf(const QObject *object) const {
  QList<Info> all;
  for (const Timer &timer : _timers)
    if (timer.object == object)
      all.append(Info(timer.id, static_cast<int>(timer.interval.count()), timer.type));
  return all;
}

int Timers::remaining(int id, Time now) const {
  const auto place = const_cast<Timers *>(this)->find(id);
  if (place == _timers.end())
    return -1;
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(place->due - now).count();
  return static_cast<int>(std::clamp<qint64>(left, 0, std::numeric_limits<int>::max()));
}

std::optional<Timers::Time> Timers::next() const {
  std::optional<Time> next;
  for (const Timer &timer : _timers)
    if (!timer.is_firing && (!next || timer.due < *next))
      next = timer.due;
  return next;
}

int Timers::fire(Time now) {
  const std::uint64_t round = ++_last_round;
  int sent = 0;
  for (Timer *timer = firstDue(now, round); timer; timer = firstDue(now, round)) {
    timer->round = round;
    timer->due += timer->interval;
    if (timer->due < now)
      timer->due = now + timer->interval;
    timer->is_firing = true;
    const int id = timer->id;
    QTimerEvent event(id);
    QCoreApplication::sendEvent(timer->object, &event);
    ++sent;
    if (const auto place = find(id); place != _timers.end())
      place->is_firing = false;
  }
  return sent;
}

/// Of those that have not fired in this round or later; null when there is none.
Timers::Timer *Timers::firstDue(Time now, std::uint64_t round) {
  Timer *first = nullptr;
  for (Timer &timer : _timers)
    if (timer.due <= now && timer.round < round && !timer.is_firing && (!first || timer.due < first->due))
      first = &timer;
  return first;
}

std::vector<Timers::Timer>::iterator Timers::find(int id) {
  return std::find_if(_timers.begin(), _timers.end(), [id](const Timer &timer) { return timer.id == id; });
}

} // namespace buttondriver
