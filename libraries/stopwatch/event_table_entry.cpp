// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/event_table_entry.h"

#include "stopwatch/delta.h"
#include "stopwatch/time_stamp.h"

#include <atomic>
#include <iostream>
#include <utility>

namespace stopwatch {

namespace {

// Kept entries hang on this chain rather than nowhere, so that leak checkers do not take them for lost memory. It has
// no destructor: at the end of the process static objects may still use the events.
std::atomic<EventTableEntry *> latest_kept{nullptr};

} // namespace

EventTableEntry::EventTableEntry(const std::string &name, const std::string &description, std::int32_t type,
                                 bool verbose, Clock clock) {
  if (type == delta_event)
    _event = std::make_unique<Delta>(name, description, verbose, std::move(clock));
  else if (type == time_stamp_event)
    _event = std::make_unique<TimeStamp>(name, description, verbose, std::move(clock));
  else
    std::cerr << "EventTableEntry():  Unknown Event type '" << type << "'";
}

void EventTableEntry::keepForGood(std::unique_ptr<EventTableEntry> entry) {
  EventTableEntry *kept = entry.release();
  kept->_next_kept = latest_kept.exchange(kept);
}

} // namespace stopwatch
