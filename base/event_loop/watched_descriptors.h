// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <cstdint>
#include <unordered_map>

class QSocketNotifier;

namespace buttondriver {

/// Which waits a descriptor ends that is an alarm.
enum class AlarmEnds {
  one_wait,  ///< the next one, each time that it becomes ready again
  all_waits, ///< every one for as long as it is ready
};

/// The descriptors that somebody waits for, all behind one descriptor of the system: waiting costs the same with a
/// thousand of them as with one. For one thread.
///
/// The notifiers of a descriptor are disabled before it is closed, as Qt's sockets do: the system would go on telling
/// of one that has a duplicate.
class WatchedDescriptors {
public:
  WatchedDescriptors();

  /// A notifier for each descriptor and kind. The system can watch sockets, pipes, terminals and the like; a notifier
  /// for a regular file, which is always ready, never fires.
  void add(QSocketNotifier *notifier);
  void remove(QSocketNotifier *notifier);
  /// Has `descriptor` end waits when it is ready for reading. It stays the caller's.
  void addAlarm(int descriptor, AlarmEnds ends);

  /// Waits until something is ready, if `may_wait`, and sends each notifier its event, as long as it is there. Returns
  /// how many were sent.
  int waitAndNotify(bool may_wait);

private:
  struct Watched {
    QSocketNotifier *notifiers[3] = {}; // by QSocketNotifier::Type
    std::uint32_t number = 0;           // no other watched descriptor had it, so that late events can be told
  };

  void update(int descriptor, Watched &watched, int operation);
  int notify(int descriptor, std::uint32_t number, std::uint32_t events);

  OwnedDescriptor _epoll;
  std::unordered_map<int, Watched> _watched;
  std::uint32_t _last_number = 0;
};

} // namespace buttondriver
