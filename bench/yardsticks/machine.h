// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace buttondriver::yardsticks {

/// The processor's name, how many there are, and the kernel; the compiler and its optimisation; Qt.
std::string machine_text();

/// How busy the machine was in the last minute, "0.4".
std::string load_text();

} // namespace buttondriver::yardsticks
