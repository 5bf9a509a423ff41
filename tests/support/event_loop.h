// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace buttondriver::test {

/// Runs the event loop of the calling thread until `done()`; looks again after every event, and now and then for what
/// other threads do. False when that did not come true in time.
template <typename Condition>
bool process_events_until(Condition done, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
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

} // namespace buttondriver::test
