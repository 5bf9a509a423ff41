// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

namespace buttondriver::fleet {

/// What a process takes.
struct ProcessFigures {
  double resident_bytes = 0;
  double proportional_bytes = 0; ///< what is shared with others counts with its share
  int threads = 0;
  double processor_seconds = 0; ///< so far, of all its threads
};

/// Throws std::runtime_error when it has gone.
ProcessFigures figures_of(pid_t pid);

} // namespace buttondriver::fleet
