// SPDX-License-Identifier: Apache-2.0
#include "counts/run/sleeping_process.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace buttondriver::counts {

namespace {

/// How often the threads below `folder` have begun or ended to sleep; empty when one of them is awake.
std::string switches_of(const std::string &folder) {
  std::string all;
  std::error_code error;
  for (const auto &thread : std::filesystem::directory_iterator(folder, error)) {
    std::ifstream status(thread.path() / "status");
    for (std::string line; std::getline(status, line);) {
      if (line.rfind("State:", 0) == 0 && line.find('S', 6) == std::string::npos)
        return {};
      if (line.find("ctxt_switches:") != std::string::npos)
        all += line + '\n';
    }
  }
  return all;
}

} // namespace

SleepingProcess::SleepingProcess(pid_t pid) : _folder("/proc/" + std::to_string(pid) + "/task") {}

// Threads are looked at one after the other: only when none has run between two looks did all sleep at the same time.
bool SleepingProcess::sleeps() const {
  const std::string before = switches_of(_folder);
  return !before.empty() && before == switches_of(_folder);
}

} // namespace buttondriver::counts
