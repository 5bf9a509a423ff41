// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/running/resident_memory.h"

#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace buttondriver::yardsticks {

double resident_memory(pid_t pid) {
  std::ifstream rollup("/proc/" + std::to_string(pid) + "/smaps_rollup");
  std::string word;
  double kib = 0;
  while (rollup >> word)
    if (word == "Rss:" && rollup >> kib)
      return kib * 1024;
  throw std::runtime_error("a program has ended");
}

double settled_memory(pid_t pid) {
  double before = 0;
  double now = resident_memory(pid);
  do {
    before = now;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    now = resident_memory(pid);
  } while (now != before);
  return now;
}

} // namespace buttondriver::yardsticks
