// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace buttondriver::simulator {

/// How much has happened since the start or the last reset, and what is going on.
struct SimulationCounters {
  std::uint64_t transfers = 0;
  std::uint64_t refused_transfers = 0;
  // Known with a daemon in this program:
  std::optional<std::uint64_t> messages;
  std::optional<std::size_t> queue_length; ///< tasks that the worker has not finished
  std::optional<std::size_t> clients;      ///< open connections to the daemon
  // Known when another program drives the panel:
  std::optional<std::size_t> drivers; ///< 1 while there is one, otherwise 0
};

} // namespace buttondriver::simulator
