// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "event.h"

#include <memory>

namespace stopwatch {

/// Where an entry's rows go. Another value counts as a mode that prints, yet has nowhere to print to.
enum LogMode : std::int32_t { log_nowhere = 0, log_to_standard_output = 1, log_to_file = 2, log_to_both = 3 };

/// One event of a StopWatch and where its rows go.
class EventTableEntry {
public:
  /// Creates and owns an event of the given EventType that is printed nowhere yet. For any other type there is a text
  /// on standard error and no event.
  EventTableEntry(const std::string &name, const std::string &description, std::int32_t type, bool verbose,
                  Clock clock = time_of_day);

  /// The event, owned by the entry; null when its type was unknown.
  Event *event() const { return _event.get(); }

  /// One of LogMode.
  std::int32_t logMode() const { return _log_mode; }
  /// Any other value prints nowhere.
  void setLogMode(std::int32_t log_mode) { _log_mode = log_mode; }

  /// Takes an entry that nobody destroys any more, so that its event stays valid until the process ends, whoever still
  /// holds a pointer to it. From then on the event may also be deleted by its holder: it is not touched again. Safe to
  /// call from any thread.
  static void keepForGood(std::unique_ptr<EventTableEntry> entry);

private:
  std::int32_t _log_mode = log_nowhere;
  std::unique_ptr<Event> _event;
  EventTableEntry *_next_kept = nullptr;
};

} // namespace stopwatch
