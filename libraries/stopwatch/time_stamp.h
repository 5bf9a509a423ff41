// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "event.h"

namespace stopwatch {

/// Records at what time of day something started and ended.
class TimeStamp : public Event {
public:
  /// An event that was never started; see Event for `verbose`.
  TimeStamp(const std::string &name, const std::string &description, bool verbose, Clock clock = time_of_day);

  void start() override;
  /// As in Event; the automatic report still finds the event running.
  void stop() override;
  void reset() override;
  void printHeader(std::ostream &stream) const override;
  /// As in Event; the times are local ones, HH:MM:SS.mmm, in the time zone at the moment of the report.
  void report(std::ostream &stream) const override;

  /// Zero before the first start.
  const timeval &startTime() const { return _startTime; }
  /// Zero before the first completed stop; of the run before while running.
  const timeval &endTime() const { return _endTime; }

private:
  timeval _startTime;
  timeval _endTime;
};

} // namespace stopwatch
