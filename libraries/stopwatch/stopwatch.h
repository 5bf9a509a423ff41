// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "clock.h"
#include "delta.h"
#include "event.h"
#include "event_table_entry.h"
#include "time_stamp.h"

#include <cstddef>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace stopwatch {

/// A bounded table of named events that are reported together, on standard output and into a log file.
///
///     stopwatch::StopWatch watch(10, "/tmp/times.log", false);
///     stopwatch::Event *draw = watch.addEvent("draw", "one screen", stopwatch::delta_event, stopwatch::log_to_both);
///     draw->start();
///     draw->stop();
///     watch.reportAll();
///
/// Every look-up by name takes the first event of that very name, in the order of adding, and warns on standard error
/// about each entry without an event that it passes. A table is used by one thread at a time.
class StopWatch {
public:
  /// A table for at most `maximum` events. The log file, if `log_file_name` is not empty, is emptied; when it can't be
  /// opened, what goes there is lost. `verbose` prints warnings and the deleting of events, and is passed on to the
  /// events. `clock` is the time of all events of the table.
  StopWatch(unsigned maximum, const std::string &log_file_name, bool verbose, Clock clock = time_of_day);
  /// Reports all, if so set, closes the log file and destroys all events that are still in the table.
  ~StopWatch();
  StopWatch(const StopWatch &) = delete;
  StopWatch &operator=(const StopWatch &) = delete;

  /// Closes the log file, if any, and goes on with the file of that name, which is emptied. Returns true even when that
  /// can't be opened: what goes there is lost then. Returns false, with a text on standard error, for an empty name.
  bool setLogFile(const std::string &name);

  /// Adds an event (EventType, LogMode) at the end of the table, which owns it. Without a log file the mode is
  /// log_to_standard_output whatever was asked for. Returns null when the table is full. Returns null for an unknown
  /// type too, yet then the table has one entry more, without an event.
  Event *addEvent(const std::string &name, const std::string &description, std::int32_t type, std::int32_t log_mode);

  /// The first event of that name, owned by the table; null when there is none.
  Event *findEvent(const std::string &name) const;
  /// The first event of both that name and that description, owned by the table; null when there is none.
  Event *findEvent(const std::string &name, const std::string &description) const;

  /// Sets where the rows of the first event of that name go (LogMode). Returns false when there is none, and for
  /// log_to_file and log_to_both while there is no log file.
  bool setLogMode(const std::string &name, std::int32_t log_mode);

  /// Takes the first event of that name out of the table; returns false when there is none. The event is not destroyed,
  /// neither now nor by the destructor: whoever holds a pointer to it can use it until the process ends, or delete it
  /// to have its memory back. The entry itself, a few words, stays allocated.
  bool deleteEvent(const std::string &name);

  /// Prints all Delta events, then all TimeStamp events, each kind with its header before the first row and followed by
  /// an empty line on standard output. A kind's header goes only to where its first event goes.
  void reportAll();

  /// Whether the destructor reports all first; off at first.
  void setReportOnDestruction(bool report) { _report_on_destruction = report; }

private:
  static constexpr std::size_t not_found = static_cast<std::size_t>(-1);

  std::size_t findEntry(const std::string &name, const std::string *description = nullptr) const;
  Event *eventAt(std::size_t index) const;
  void openLogFile();
  void reportKind(EventType type);

  bool _verbose;
  unsigned _maximum;
  std::string _log_file_name;
  std::ofstream _log_file;
  std::vector<std::unique_ptr<EventTableEntry>> _table;
  bool _report_on_destruction = false;
  Clock _clock;
};

} // namespace stopwatch
