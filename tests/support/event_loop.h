// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace buttondriver::test {

/// Runs the event loop of the calling thread until `done()`; looks again after every event, and now and then for what
/// other threads do. False when that did not come true in time: far more than it takes, also under an emulator.
template <typename Condition>
bool process_events_until(Condition done, std::chrono::milliseconds limit = std::chrono::seconds(60)) {
  const QDeadlineTimer deadline(limit);
  QTimer look_again;
  look_again.start(10);
  while (!done()) {
    if (deadline.hasExpired())
      return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

/// Runs the event loop of the calling thread until nothing is left to do at once: no event is posted, no descriptor is
/// ready, no timer is due.
inline void process_ready_events() {
  QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
  while (dispatcher->processEvents(QEventLoop::AllEvents)) {
  }
}

} // namespace buttondriver::test
