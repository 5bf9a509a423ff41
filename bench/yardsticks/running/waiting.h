// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/device/device_log.h"

#include <chrono>
#include <stdexcept>
#include <thread>

namespace buttondriver::yardsticks {

/// Looks every 50 microseconds. Throws std::runtime_error with `fault` when it takes more than a minute.
template <class Condition> void wait_until(Condition is_done, const char *fault) {
  constexpr std::int64_t limit_ns = 60'000'000'000;
  const std::int64_t end_ns = bench::now_ns() + limit_ns;
  while (!is_done()) {
    if (bench::now_ns() > end_ns)
      throw std::runtime_error(fault);
    std::this_thread::sleep_for(std::chrono::microseconds(50));
  }
}

/// How many seconds `work` takes.
template <class Work> double seconds_of(Work work) {
  const std::int64_t start_ns = bench::now_ns();
  work();
  return static_cast<double>(bench::now_ns() - start_ns) * 1e-9;
}

} // namespace buttondriver::yardsticks
