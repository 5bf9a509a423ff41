// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace stopwatch::test {

// Columns of 15, 35, 14, 12 and 12 characters.
inline const std::string delta_header =
    "========================================================================================\n"
    "Time Difference Data\n"
    "Event Name     Description                        Num                Average        Last\n"
    "                                                  Samples            (msecs)     (msecs)\n"
    "========================================================================================\n"
    "\n";

// Columns of 15, 35, 13 and 13 characters.
inline const std::string time_stamp_header =
    "========================================================================================\n"
    "TimeStamp Data\n"
    "Event Name     Description                        Start        End          \n"
    "                                                  Time         Time         \n"
    "========================================================================================\n"
    "\n";

} // namespace stopwatch::test
