// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace buttondriver::simulator {

/// How long a connection may take for what, in milliseconds, and how many there may be.
struct HttpLimits {
  /// For a request to arrive.
  int request_ms = 10'000;
  /// For an answer to be made, after all work that it waits for, and to be taken.
  int answer_ms = 60'000;
  /// For a client to take the answer that refuses its request, and to hang up.
  int farewell_ms = 2'000;
  /// More connections than these at once are refused.
  int most_connections = 100;
};

} // namespace buttondriver::simulator
