// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/stopwatch.h"

#include <iostream>
#include <utility>

namespace stopwatch {

StopWatch::StopWatch(unsigned maximum, const std::string &log_file_name, bool verbose, Clock clock)
    : _verbose(verbose), _maximum(maximum), _log_file_name(log_file_name), _clock(std::move(clock)) {
  if (!_log_file_name.empty())
    openLogFile();
}

StopWatch::~StopWatch() {
  if (_report_on_destruction)
    reportAll();
  if (!_log_file_name.empty())
    _log_file.close();
  for (std::unique_ptr<EventTableEntry> &entry : _table) {
    if (_verbose && entry->event())
      std::cout << "Deleting event '" << entry->event()->name() << "' now." << std::endl;
    entry.reset();
  }
}

bool StopWatch::setLogFile(const std::string &name) {
  if (name.empty()) {
    std::cerr << "Error: Log file name supplied is empty.";
    return false;
  }
  if (_log_file.is_open())
    _log_file.close();
  _log_file_name = name;
  openLogFile();
  return true;
}

Event *StopWatch::addEvent(const std::string &name, const std::string &description, std::int32_t type,
                           std::int32_t log_mode) {
  if (_table.size() >= _maximum) {
    if (_verbose) {
      std::cerr << "Cannot add new event.  This would exceed the "
                << "maximum number of events (" << _maximum << ")" << std::endl;
      std::cerr << "Remove some events using deleteEvent() and try again." << std::endl;
    }
    return nullptr;
  }
  if (_log_file_name.empty()) {
    if (_verbose) {
      std::cerr << "No logfile was specified when creating StopWatch." << std::endl;
      std::cerr << "Entry '" << name << "' will be created with logging to stdout only." << std::endl;
    }
    log_mode = log_to_standard_output;
  }
  _table.push_back(std::make_unique<EventTableEntry>(name, description, type, _verbose, _clock));
  _table.back()->setLogMode(log_mode);
  return _table.back()->event();
}

Event *StopWatch::findEvent(const std::string &name) const { return eventAt(findEntry(name)); }

Event *StopWatch::findEvent(const std::string &name, const std::string &description) const {
  return eventAt(findEntry(name, &description));
}

bool StopWatch::setLogMode(const std::string &name, std::int32_t log_mode) {
  const std::size_t index = findEntry(name);
  if (index == not_found)
    return false;
  const bool needs_log_file = log_mode == log_to_file || log_mode == log_to_both;
  if (needs_log_file && _log_file_name.empty())
    return false;
  _table[index]->setLogMode(log_mode);
  return true;
}

bool StopWatch::deleteEvent(const std::string &name) {
  const std::size_t index = findEntry(name);
  if (index == not_found)
    return false;
  EventTableEntry::keepForGood(std::move(_table[index]));
  _table.erase(_table.begin() + static_cast<std::ptrdiff_t>(index));
  return true;
}

void StopWatch::reportAll() {
  reportKind(delta_event);
  reportKind(time_stamp_event);
}

std::size_t StopWatch::findEntry(const std::string &name, const std::string *description) const {
  for (std::size_t index = 0; index < _table.size(); ++index) {
    const Event *event = _table[index]->event();
    if (!event) {
      std::cerr << "Warning: Event at index " << index << " is NULL" << std::endl;
      continue;
    }
    if (event->name() == name && (!description || event->description() == *description))
      return index;
  }
  return not_found;
}

Event *StopWatch::eventAt(std::size_t index) const { return index == not_found ? nullptr : _table[index]->event(); }

void StopWatch::openLogFile() { _log_file.open(_log_file_name, std::ios_base::out | std::ios_base::trunc); }

void StopWatch::reportKind(EventType type) {
  bool first = true;
  for (const std::unique_ptr<EventTableEntry> &entry : _table) {
    Event *event = entry->event();
    const std::int32_t mode = entry->logMode();
    if (!event || event->type() != type || mode == log_nowhere)
      continue;
    if (first)
      event->setHeaderPending(true);
    first = false;
    if (mode == log_to_standard_output || mode == log_to_both) {
      event->report(std::cout);
      std::cout << std::endl;
    }
    if (!_log_file_name.empty() && (mode == log_to_file || mode == log_to_both)) {
      event->report(_log_file);
      _log_file << std::endl;
    }
    event->setHeaderPending(false);
  }
  std::cout << std::endl;
}

} // namespace stopwatch
