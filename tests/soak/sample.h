// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace buttondriver::soak {

/// What was seen of the daemon at one moment.
struct Sample {
  double seconds = 0;
  long memory_kib = 0;
  int descriptors = 0;
  long unread_kib = 0; ///< sent to the daemon, and not yet read by it
  long unsent_kib = 0; ///< answers that their clients have not taken
  double sent_mib = 0; ///< by the loads, so far
  int answers = 0;     ///< to the prober, since the last sample
  double median_ms = 0;
  double slowest_ms = 0;
};

/// The `part`th quantile, 0 to 1, of the values; 0 when there are none.
double quantile(std::vector<double> values, double part);

/// False when the file could not be written.
bool write_csv(const std::string &file, const std::vector<Sample> &samples);
/// Curves of memory, descriptors, latency and what waits in the kernel, over time, as an SVG picture.
bool write_plot(const std::string &file, const std::vector<Sample> &samples);

} // namespace buttondriver::soak
