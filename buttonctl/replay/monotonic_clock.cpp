// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/replay/monotonic_clock.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <time.h>

namespace buttondriver::buttonctl {

namespace {

constexpr std::int64_t microseconds_per_second = 1000000;
constexpr std::int64_t microseconds_per_millisecond = 1000;
constexpr std::int64_t nanoseconds_per_microsecond = 1000;
/// Timers of the event loop count in milliseconds; the rest of the time is slept through.
constexpr std::int64_t slept_through_us = 2 * microseconds_per_millisecond;
constexpr std::int64_t longest_timer_ms = 60 * 60 * 1000;

void sleep_until(std::int64_t deadline_us) {
  const timespec deadline = {
      static_cast<time_t>(deadline_us / microseconds_per_second),
      static_cast<decltype(timespec::tv_nsec)>(deadline_us % microseconds_per_second * nanoseconds_per_microsecond)};
  ::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr);
}

} // namespace

std::int64_t MonotonicClock::nowUs() {
  timespec now = {};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * microseconds_per_second + std::int64_t{now.tv_nsec} / nanoseconds_per_microsecond;
}

void MonotonicClock::waitUntil(std::int64_t deadline_us, const std::function<bool()> &give_up) {
  QCoreApplication::processEvents();
  while (!give_up()) {
    const std::int64_t left_us = deadline_us - nowUs();
    if (left_us < slept_through_us) {
      if (left_us > 0)
        sleep_until(deadline_us);
      return;
    }
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.setSingleShot(true);
    timer.start(
        static_cast<int>(std::min((left_us - slept_through_us / 2) / microseconds_per_millisecond, longest_timer_ms)));
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

} // namespace buttondriver::buttonctl
