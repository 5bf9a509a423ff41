// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <sys/types.h>

namespace buttondriver::counts {

/// Another process, which may have fallen asleep.
class SleepingProcess {
public:
  explicit SleepingProcess(pid_t pid);

  /// Whether all its threads wait in the kernel, and did so for a while. A thread that is only kept from running by
  /// others, however long, does not wait there.
  bool sleeps() const;

private:
  std::string _folder;
};

} // namespace buttondriver::counts
