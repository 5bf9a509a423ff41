// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "latency/measured_run.h"

#include <string>
#include <vector>

namespace buttondriver::latency {

/// The runs as tables in Markdown, one for each device, with columns for each daemon side by side. A value that misses
/// its goal is in bold letters.
std::string markdown(const std::vector<MeasuredRun> &runs);

/// Median, worst and count of each row of each run; times in seconds. False when the file could not be written.
bool write_csv(const std::string &file, const std::vector<MeasuredRun> &runs);

} // namespace buttondriver::latency
