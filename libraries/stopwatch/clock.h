// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

#include <sys/time.h>

namespace stopwatch {

/// Where events take the time of day from. Called with the place for the time (UTC seconds, and microseconds from 0 to
/// 999999); returns 0, or a negative number when it has no time, and then leaves the place as it was. Never empty.
using Clock = std::function<int(timeval &)>;

/// The clock of the machine, `gettimeofday`.
int time_of_day(timeval &time);

} // namespace stopwatch
