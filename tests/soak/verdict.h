// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "soak/sample.h"

#include <string>
#include <vector>

namespace buttondriver::soak {

/// How much a daemon that is flat may still move.
struct Thresholds {
  double most_memory_mib = 256;  ///< at any time
  double most_growth_mib = 8;    ///< after the warm-up, by the straight line that fits best
  double most_left_mib = 64;     ///< more than at the start, when all loads have gone and the work is done
  int most_descriptors = 64;     ///< more than at the start, at any time
  int most_descriptors_left = 4; ///< more than at the start, at the end; two of them come with its first picture
  double most_p99_ms = 2000;
  int most_unanswered = 0;
};

/// All that a run has shown.
struct SoakRun {
  Sample start;                ///< before the loads
  std::vector<Sample> samples; ///< one for each second under load
  Sample end;                  ///< when all is done
  std::vector<double> latencies_ms;
  int unanswered = 0;
  double drain_seconds = 0; ///< from the end of the loads to the end of the work
  std::string broken;       ///< why the run ended before its time; empty when it did not
};

struct Verdict {
  bool is_flat;
  std::string summary; ///< a line of numbers, then one for each threshold that was passed
};

Verdict judge(const SoakRun &run, const Thresholds &thresholds);

} // namespace buttondriver::soak
