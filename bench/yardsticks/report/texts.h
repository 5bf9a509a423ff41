// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "yardsticks/report/comparison.h"

#include <string>

namespace buttondriver::yardsticks {

/// A value for people, with three digits: "3.10 µs", "412,000/s", "11.2 MiB".
std::string text_of(double value, Unit unit);
/// The median with the quartiles: "3.10 µs (3.00 µs to 3.20 µs)", smaller ones first.
std::string spread_text(const Spread &spread, Unit unit);

/// What the goal speaks of: "2.10 times (2.00 to 2.20)", "3.00 times as fast (2.90 to 3.10)", or "1.20 MiB more
/// (1.10 MiB more to 1.30 MiB more)". Empty where that is our value itself.
std::string outcome_text(const Comparison &row);
/// Empty for none.
std::string goal_text(const Comparison &row);

} // namespace buttondriver::yardsticks
