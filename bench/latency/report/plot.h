// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "latency/measured_run.h"

#include <string>
#include <vector>

namespace buttondriver::latency {

/// The times of all runs as an SVG picture for light and dark pages: one column for each device, logarithmic, with the
/// daemons under each other, from the median to the worst, and the goals. False when the file could not be written.
bool write_plot(const std::string &file, const std::vector<MeasuredRun> &runs);

} // namespace buttondriver::latency
