// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <time.h>

namespace stopwatch::test {

/// The process's time zone (as in the variable TZ) while it lives.
class TimeZone {
public:
  explicit TimeZone(const char *zone) {
    if (const char *previous = std::getenv("TZ"))
      _previous = previous;
    ::setenv("TZ", zone, 1);
  }
  ~TimeZone() {
    if (_previous)
      ::setenv("TZ", _previous->c_str(), 1);
    else
      ::unsetenv("TZ");
    ::tzset();
  }
  TimeZone(const TimeZone &) = delete;
  TimeZone &operator=(const TimeZone &) = delete;

private:
  std::optional<std::string> _previous;
};

} // namespace stopwatch::test
