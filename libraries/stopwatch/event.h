// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "clock.h"

#include <cstdint>
#include <iosfwd>
#include <string>

namespace stopwatch {

/// The kinds of event, as `Event::type` gives them.
enum EventType : std::int32_t { delta_event = 0, time_stamp_event = 1 };

/// Something in a program whose time is taken, with a name to report it under. A clock that fails costs one line on
/// standard error and nothing else; no operation throws because of it.
///
/// An event is used by one thread at a time.
class Event {
public:
  virtual ~Event();
  Event(const Event &) = delete;
  Event &operator=(const Event &) = delete;

  /// Takes the start time; nothing happens when the event is running already. The event runs afterwards even if the
  /// clock failed.
  virtual void start() = 0;

  /// Takes the end time and completes the measurement; nothing happens unless the event is running. The event goes on
  /// running if the clock failed.
  virtual void stop() = 0;

  /// Forgets all measurements, stops running and takes back a pending header. Verbose and auto report stay.
  virtual void reset() = 0;

  /// Writes the five lines of the kind's column headings and an empty line. No alignment flag is left on `stream`.
  virtual void printHeader(std::ostream &stream) const = 0;

  /// Writes the event's row without a line end, after the header when that is pending; it stays pending. No alignment
  /// flag is left on `stream`; names and descriptions that are wider than their column are not cut.
  virtual void report(std::ostream &stream) const = 0;

  /// The event's name, column "Event Name".
  const std::string &name() const { return _name; }
  /// Free text, column "Description".
  const std::string &description() const { return _description; }
  /// One of EventType.
  std::int32_t type() const { return _type; }
  /// Whether the event was started and has not been stopped since.
  bool running() const { return _running; }
  /// As setVerbose() has it.
  bool verbose() const { return _verbose; }
  /// As setHeaderPending() has it.
  bool headerPending() const { return _header_pending; }
  /// As setAutoReport() has it.
  bool autoReport() const { return _auto_report; }

  /// Whether start and stop print on standard output what they do.
  void setVerbose(bool verbose) { _verbose = verbose; }
  /// Whether reports begin with the header; off at first, and again after a reset.
  void setHeaderPending(bool pending) { _header_pending = pending; }
  /// Whether a completed stop reports on standard output; off at first.
  void setAutoReport(bool automatic) { _auto_report = automatic; }

protected:
  /// For the kinds of event; `type` as type() gives it. Header pending and auto report are off, the event is not
  /// running.
  Event(const std::string &name, const std::string &description, std::int32_t type, bool verbose,
        Clock clock = time_of_day);

  /// Reads the clock into `time` after the line `announcement` when verbose. Returns false, with `failure_text` on
  /// standard error, when the clock failed.
  bool readClock(timeval &time, const char *announcement, const char *failure_text);
  /// Prints `time` under the name `label` when verbose.
  void tellTime(const char *label, const timeval &time) const;
  /// What a completed stop prints when auto report is set.
  void reportAutomatically() const;

  bool _verbose;                ///< verbose()
  std::string _name;            ///< name()
  std::string _description;     ///< description()
  std::int32_t _type;           ///< type()
  bool _header_pending = false; ///< headerPending()
  bool _auto_report = false;    ///< autoReport()
  bool _running = false;        ///< running()

private:
  Clock _clock;
};

} // namespace stopwatch
