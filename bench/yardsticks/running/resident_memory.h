// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <sys/types.h>

namespace buttondriver::yardsticks {

/// Bytes of a process that are in memory, page by page; /proc/PID/status is off by up to some hundred KiB. Throws
/// std::runtime_error when the process has gone.
double resident_memory(pid_t pid);

/// The same, once it has not changed for 0.1 s.
double settled_memory(pid_t pid);

} // namespace buttondriver::yardsticks
