// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace buttondriver::counts {

/// How many instructions a file of callgrind's tells of: its totals, which are the sum of what each line has cost. Its
/// summary counts functions that had been called before counting began more than once. Throws std::runtime_error when
/// there is no such number in it.
double callgrind_total(std::string_view dump);

} // namespace buttondriver::counts
