// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace buttondriver::yardsticks {

/// The processor's name, how many there are, and the kernel; the compiler and its optimisation; Qt.
std::string machine_text();

/// Which share of its processors' time the machine is at work, 0 to 1, while this program looks at it for so long.
double busy_share(double seconds);

} // namespace buttondriver::yardsticks
