// SPDX-License-Identifier: Apache-2.0
#include "fleet/running/process_figures.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace buttondriver::fleet {

namespace {

/// The number after `name` in a file of /proc, in KiB.
double kib_in(const std::string &file, const std::string &name) {
  std::ifstream words(file);
  double kib = 0;
  for (std::string word; words >> word;)
    if (word == name && words >> kib)
      return kib;
  throw std::runtime_error("a program has ended");
}

} // namespace

ProcessFigures figures_of(pid_t pid) {
  const std::string folder = "/proc/" + std::to_string(pid);
  ProcessFigures figures;
  figures.resident_bytes = kib_in(folder + "/smaps_rollup", "Rss:") * 1024;
  figures.proportional_bytes = kib_in(folder + "/smaps_rollup", "Pss:") * 1024;
  for (const auto &thread : std::filesystem::directory_iterator(folder + "/task")) {
    // The first number: nanoseconds on a processor.
    double nanoseconds = 0;
    std::ifstream(thread.path() / "schedstat") >> nanoseconds;
    figures.processor_seconds += nanoseconds * 1e-9;
    ++figures.threads;
  }
  return figures;
}

} // namespace buttondriver::fleet
