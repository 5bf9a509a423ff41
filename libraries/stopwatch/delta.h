// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "event.h"

namespace stopwatch {

/// Measures the same interval again and again, from start to stop, and keeps the number of intervals, their average and
/// the last one. Room for 2147483647 intervals between two resets.
class Delta : public Event {
public:
  /// An event that was never started; see Event for `verbose`.
  Delta(const std::string &name, const std::string &description, bool verbose, Clock clock = time_of_day);

  void start() override;
  void stop() override;
  void reset() override;
  void printHeader(std::ostream &stream) const override;
  /// As in Event; fixed-point notation with three decimals stays set on `stream`.
  void report(std::ostream &stream) const override;

  /// Completed intervals.
  std::int32_t samples() const { return _samples; }
  /// Sum of all intervals in milliseconds.
  double total() const { return _total; }
  /// Mean of all intervals in milliseconds; 0 before the first.
  double average() const { return _average; }
  /// The last interval in milliseconds, negative when the clock was set back meanwhile; 0 before the first.
  double last() const { return _last; }
  /// When the last interval started.
  const timeval &startTime() const { return _startTime; }

private:
  std::int32_t _samples;
  double _total;
  double _average;
  double _last;
  timeval _startTime;
};

} // namespace stopwatch
