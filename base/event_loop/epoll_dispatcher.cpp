// SPDX-License-Identifier: Apache-2.0
#include "event_loop/epoll_dispatcher.h"

#include <QCoreApplication>

#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace buttondriver {

EpollDispatcher::EpollDispatcher()
    : _wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      _clock(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
  if (!_wake || !_clock)
    qFatal("no descriptor for the event loop");
  _descriptors.addAlarm(_wake.get(), AlarmEnds::one_wait);
  _descriptors.addAlarm(_clock.get(), AlarmEnds::all_waits);
}

bool EpollDispatcher::processEvents(QEventLoop::ProcessEventsFlags flags) {
  _is_interrupted = false;
  emit awake();
  // Before the events are sent: what is posted from now on ends the waiting.
  const bool was_called = _is_called.exchange(false);
  QCoreApplication::sendPostedEvents();
  bool may_wait = flags.testFlag(QEventLoop::WaitForMoreEvents) && !_is_interrupted;
  if (may_wait)
    emit aboutToBlock();
  if (_is_interrupted)
    return false;
  const std::optional<Timers::Time> next = _timers.next();
  may_wait = may_wait && (!next || *next > std::chrono::steady_clock::now());
  if (may_wait)
    setAlarm(next);
  int sent = was_called ? 1 : 0;
  if (!flags.testFlag(QEventLoop::ExcludeSocketNotifiers))
    sent += _descriptors.waitAndNotify(may_wait);
  if (_timers.next())
    sent += _timers.fire(std::chrono::steady_clock::now());
  return sent > 0;
}

void EpollDispatcher::registerTimer(int id, Interval interval_ms, Qt::TimerType type, QObject *object) {
  _timers.add(id, interval_ms, type, object, std::chrono::steady_clock::now());
}

int EpollDispatcher::remainingTime(int id) { return _timers.remaining(id, std::chrono::steady_clock::now()); }

/// The clock that std::chrono::steady_clock reads here. Once it was due it stays readable until it is set again.
void EpollDispatcher::setAlarm(const std::optional<Timers::Time> &time) {
  if (time == _alarm)
    return;
  _alarm = time;
  itimerspec setting{};
  if (time) {
    const auto since_start = time->time_since_epoch();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(since_start);
    setting.it_value.tv_sec = seconds.count();
    setting.it_value.tv_nsec = static_cast<long>(std::chrono::nanoseconds(since_start - seconds).count());
  }
  ::timerfd_settime(_clock.get(), TFD_TIMER_ABSTIME, &setting, nullptr);
}

void EpollDispatcher::wakeUp() {
  if (!_is_called.exchange(true))
    ::eventfd_write(_wake.get(), 1);
}

void EpollDispatcher::interrupt() {
  _is_interrupted = true;
  _is_called = true;
  // Always: an earlier call may have ended a wait already, while the next round has not begun.
  ::eventfd_write(_wake.get(), 1);
}

} // namespace buttondriver
