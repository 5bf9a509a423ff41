// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "soak/load/loads.h"
#include "soak/load/loopback_socket.h"

#include <mutex>
#include <vector>

namespace buttondriver::soak {

/// Sends a ping and waits for its answer. False when not all of that came within `longest_wait_ms`, or the target
/// stops.
bool ping(LoopbackSocket &socket, const Target &target, int longest_wait_ms);

/// Asks the daemon on a connection of its own, fifty times a second, and measures how long the answers take.
class Prober {
public:
  static constexpr int longest_wait_ms = 10'000;

  /// Until the target stops.
  void run(Target &target);

  /// Milliseconds of the answers since the last call. One that did not come in time counts as longest_wait_ms.
  std::vector<double> takeLatencies();
  int unanswered() const;

private:
  void keep(double latency_ms, bool is_answered);

  mutable std::mutex _mutex;
  std::vector<double> _latencies;
  int _unanswered = 0;
};

} // namespace buttondriver::soak
