// SPDX-License-Identifier: Apache-2.0
#include "event_loop/watched_descriptors.h"

#include "logging/log_line.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>

#include <cerrno>
#include <sys/epoll.h>

namespace buttondriver {

namespace {

/// More than a program of this tree watches, so that each round is fair to all of them.
constexpr int at_once = 1024;

/// In place of a watched descriptor's number.
constexpr std::uint32_t alarm_number = 0;

/// What the system calls the kinds of notifiers, and what makes one fire: an end or a fault is there to be read, and is
/// no reason to wait until one can write.
struct Kind {
  std::uint32_t wanted;
  std::uint32_t fires_at;
};
constexpr Kind kinds[] = {{EPOLLIN, EPOLLIN | EPOLLHUP | EPOLLERR},
                          {EPOLLOUT, EPOLLOUT | EPOLLHUP | EPOLLERR},
                          {EPOLLPRI, EPOLLPRI | EPOLLHUP | EPOLLERR}};
static_assert(QSocketNotifier::Read == 0 && QSocketNotifier::Write == 1 && QSocketNotifier::Exception == 2);

std::uint64_t key_of(int descriptor, std::uint32_t number) {
  return std::uint64_t{number} << 32 | static_cast<std::uint32_t>(descriptor);
}

} // namespace

WatchedDescriptors::WatchedDescriptors() : _epoll(::epoll_create1(EPOLL_CLOEXEC)) {
  if (!_epoll)
    qFatal("no descriptor for the event loop");
}

void WatchedDescriptors::add(QSocketNotifier *notifier) {
  const int descriptor = static_cast<int>(notifier->socket());
  const auto [place, is_new] = _watched.try_emplace(descriptor);
  Watched &watched = place->second;
  if (is_new && ++_last_number == alarm_number)
    ++_last_number;
  if (is_new)
    watched.number = _last_number;
  watched.notifiers[notifier->type()] = notifier;
  update(descriptor, watched, is_new ? EPOLL_CTL_ADD : EPOLL_CTL_MOD);
}

void WatchedDescriptors::remove(QSocketNotifier *notifier) {
  const int descriptor = static_cast<int>(notifier->socket());
  const auto place = _watched.find(descriptor);
  if (place == _watched.end() || place->second.notifiers[notifier->type()] != notifier)
    return;
  Watched &watched = place->second;
  watched.notifiers[notifier->type()] = nullptr;
  if (watched.notifiers[0] || watched.notifiers[1] || watched.notifiers[2])
    return update(descriptor, watched, EPOLL_CTL_MOD);
  update(descriptor, watched, EPOLL_CTL_DEL);
  _watched.erase(place);
}

void WatchedDescriptors::addAlarm(int descriptor, AlarmEnds ends) {
  epoll_event event{};
  event.events = EPOLLIN;
  if (ends == AlarmEnds::one_wait)
    event.events |= EPOLLET;
  event.data.u64 = key_of(descriptor, alarm_number);
  if (::epoll_ctl(_epoll.get(), EPOLL_CTL_ADD, descriptor, &event) != 0)
    qFatal("no descriptor for the event loop");
}

void WatchedDescriptors::update(int descriptor, Watched &watched, int operation) {
  epoll_event event{};
  for (int kind = 0; kind < 3; ++kind)
    if (watched.notifiers[kind])
      event.events |= kinds[kind].wanted;
  event.data.u64 = key_of(descriptor, watched.number);
  if (::epoll_ctl(_epoll.get(), operation, descriptor, &event) == 0 || operation == EPOLL_CTL_DEL)
    return;
  // Another descriptor has got the number, or the system had no memory for this one before.
  if (operation == EPOLL_CTL_MOD && errno == ENOENT &&
      ::epoll_ctl(_epoll.get(), EPOLL_CTL_ADD, descriptor, &event) == 0)
    return;
  critical_line() << "buttondriver: descriptor cannot be watched, descriptor" << descriptor << "error" << errno;
}

int WatchedDescriptors::waitAndNotify(bool may_wait) {
  epoll_event events[at_once];
  const int count = ::epoll_wait(_epoll.get(), events, at_once, may_wait ? -1 : 0);
  int sent = 0;
  for (int i = 0; i < count; ++i)
    sent += notify(static_cast<int>(static_cast<std::uint32_t>(events[i].data.u64)),
                   static_cast<std::uint32_t>(events[i].data.u64 >> 32), events[i].events);
  return sent;
}

int WatchedDescriptors::notify(int descriptor, std::uint32_t number, std::uint32_t events) {
  int sent = 0;
  for (int kind = 0; kind < 3; ++kind) {
    if ((events & kinds[kind].fires_at) == 0)
      continue;
    // Looked up each time: an event before may have removed it, or have closed the descriptor.
    const auto place = _watched.find(descriptor);
    if (place == _watched.end() || place->second.number != number)
      return sent;
    QSocketNotifier *const notifier = place->second.notifiers[kind];
    if (!notifier)
      continue;
    QEvent event(QEvent::SockAct);
    QCoreApplication::sendEvent(notifier, &event);
    ++sent;
  }
  return sent;
}

} // namespace buttondriver
