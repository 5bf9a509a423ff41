// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "event_loop/timers.h"
#include "event_loop/watched_descriptors.h"
#include "files/owned_descriptor.h"

#include <QAbstractEventDispatcher>

#include <atomic>
#include <optional>

namespace buttondriver {

/// Qt's event loop for a program with many connections. Those of Qt itself look at each descriptor in each round, so
/// that whoever is silent costs those that are not; this one is told by the system which of them are ready.
///
/// A round sends the posted events, waits, and then sends the events of the descriptors and of the timers that are due.
/// To be given to QCoreApplication::setEventDispatcher before the application is made, which owns it from then on. All
/// is for the thread of the loop, but for wakeUp and interrupt.
class EpollDispatcher : public QAbstractEventDispatcher {
  Q_OBJECT

public:
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
  using Interval = qint64;
#else
  using Interval = int;
#endif

  EpollDispatcher();

  bool processEvents(QEventLoop::ProcessEventsFlags flags) override;

  void registerSocketNotifier(QSocketNotifier *notifier) override { _descriptors.add(notifier); }
  void unregisterSocketNotifier(QSocketNotifier *notifier) override { _descriptors.remove(notifier); }

  using QAbstractEventDispatcher::registerTimer;
  void registerTimer(int id, Interval interval_ms, Qt::TimerType type, QObject *object) override;
  bool unregisterTimer(int id) override { return _timers.remove(id); }
  bool unregisterTimers(QObject *object) override { return _timers.removeAllOf(object); }
  QList<TimerInfo> registeredTimers(QObject *object) const override { return _timers.allOf(object); }
  int remainingTime(int id) override;

  void wakeUp() override;
  void interrupt() override;

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
  bool hasPendingEvents() override { return false; } // asked by QCoreApplication::hasPendingEvents only
  void flush() override {}
#endif

private:
  void setAlarm(const std::optional<Timers::Time> &time);

  WatchedDescriptors _descriptors;
  Timers _timers;
  OwnedDescriptor _wake;              // becomes readable each time that somebody calls
  OwnedDescriptor _clock;             // readable when _alarm is due
  std::optional<Timers::Time> _alarm; // what the clock is set to
  std::atomic<bool> _is_called{false};
  std::atomic<bool> _is_interrupted{false};
};

} // namespace buttondriver
