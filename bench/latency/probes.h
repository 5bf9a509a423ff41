// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "latency/rows/rows.h"
#include "soak/load/loads.h"
#include "soak/load/loopback_socket.h"
#include "support/device/device_log.h"

#include <cstdint>

namespace buttondriver::latency {

using bench::DeviceLog;
using bench::LedCommand;
using bench::now_ns;

/// What the probes work on. Shared by their threads.
struct ProbeSetting {
  const soak::Target &target;
  const DeviceLog &device;
  std::int64_t end_ns;   ///< nothing is tried after this
  std::int64_t limit_ns; ///< how long is waited for one answer or transfer
  int shortest_pause_ms; ///< between two tries; the lengths vary
  int longest_pause_ms;
};

// Each tries one thing over and over, once at least, and waits for the outcome each time. What does not come within the
// limit is missing and ends the probe. Each is meant for a thread of its own.

/// From sending a command on `socket` to its first transfer.
Values probe_open_commands(const ProbeSetting &setting, soak::LoopbackSocket &socket);
/// From connecting to the answer to a ping.
Values probe_first_answers(const ProbeSetting &setting);
/// From connecting to the first transfer of a command.
Values probe_new_commands(const ProbeSetting &setting);
/// From sending a ping on `socket` to its answer.
Values probe_pings(const ProbeSetting &setting, soak::LoopbackSocket &socket);

/// How many of the commands in the device's log are such as the probes send.
std::uint64_t count_probe_commands(const DeviceLog &device);

} // namespace buttondriver::latency
