// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace buttondriver::soak {

/// What the loads work on, and what they have done so far. Shared by their threads.
struct Target {
  std::uint16_t port = 0;
  std::string root; ///< folder that the daemon's files lie under
  std::atomic<bool> stop{false};
  std::atomic<std::uint64_t> bytes_sent{0};
  std::atomic<std::uint64_t> connections{0};
};

/// One way to make a daemon's life hard. `run` returns soon after `stop`.
struct Load {
  const char *name;
  void (*run)(Target &target);
};

/// All of them: floods, pictures, reconnects, endings, fonts, levels, stalled, endless.
const std::vector<Load> &all_loads();

} // namespace buttondriver::soak
