// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "yardsticks/report/comparison.h"

#include <string>
#include <vector>

namespace buttondriver::yardsticks {

/// Two SVG pictures for light and dark pages, with logarithmic axes, medians and quartiles: `beginning`-times.svg has
/// the times of both sides of each row, and `beginning`-ratios.svg our times, or our memory, as a multiple of the
/// yardstick's, with goals. False when a file could not be written.
bool write_plots(const std::string &beginning, const std::vector<Group> &groups);

} // namespace buttondriver::yardsticks
