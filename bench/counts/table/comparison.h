// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "counts/table/table.h"

#include <string>
#include <vector>

namespace buttondriver::counts {

/// By how much, as a share of what the table says, a number may differ from it.
inline constexpr double tolerance = 0.05;

/// One line for each thing.
struct Comparison {
  std::vector<std::string> faults; ///< what has become dearer, and rows that only one of the two has
  std::vector<std::string> notes;  ///< what has become cheaper
};

/// Compares the held columns.
Comparison compare(const Table &expected, const Table &seen);

} // namespace buttondriver::counts
