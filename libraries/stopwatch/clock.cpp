// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/clock.h"

namespace stopwatch {

int time_of_day(timeval &time) { return ::gettimeofday(&time, nullptr); }

} // namespace stopwatch
