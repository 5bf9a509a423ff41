// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// What the server asks of the system passes through here, in place of the C library's accept4, send and close.
namespace buttondriver::fuzz {

struct SystemCalls {
  /// So many calls of accept4 fail for want of descriptors.
  int refusals = 0;
  /// Bytes that the system still takes from send; then it has no room.
  std::int64_t room = 0;
  /// The server's port. Its ends of connections close by a reset where that loses nothing. Otherwise each connection
  /// would keep a port of the machine for a minute, and there are thousands in a second.
  std::uint16_t server_port = 0;
  /// A connection was accepted: its descriptor, and the port of its client.
  void (*accepted)(int descriptor, std::uint16_t port) = nullptr;
};

extern SystemCalls system_calls;

/// What arrives at this TCP socket is acknowledged at once, for a while. The system would take its time.
void acknowledge_at_once(int descriptor);

} // namespace buttondriver::fuzz
