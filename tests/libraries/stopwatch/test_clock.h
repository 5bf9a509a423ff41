// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "stopwatch/stopwatch.h"

namespace stopwatch::test {

/// Wider than suseconds_t where times are, on a 32-bit machine.
using Microseconds = decltype(timeval::tv_usec);

/// A clock that stands still until it is set, and that can fail. Outlives the events that read it.
class TestClock {
public:
  TestClock(time_t seconds, Microseconds microseconds) { set(seconds, microseconds); }

  void set(time_t seconds, Microseconds microseconds) { _now = timeval{seconds, microseconds}; }
  /// Whether readings fail from now on.
  void fail(bool failing) { _failing = failing; }
  int readings() const { return _readings; }

  Clock clock() {
    return [this](timeval &time) {
      ++_readings;
      if (_failing)
        return -1;
      time = _now;
      return 0;
    };
  }

private:
  timeval _now{};
  bool _failing = false;
  int _readings = 0;
};

} // namespace stopwatch::test
