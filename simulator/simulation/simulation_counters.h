// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

namespace buttondriver::simulator {

/// How much has happened since the start or the last reset, and what is going on.
struct SimulationCounters {
  std::uint64_t messages = 0;
  std::uint64_t transfers = 0;
  std::uint64_t refused_transfers = 0;
  std::size_t queue_length = 0; ///< tasks that the worker has not finished
  std::size_t clients = 0;      ///< open connections to the daemon
};

} // namespace buttondriver::simulator
