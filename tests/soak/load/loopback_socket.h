// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <sys/types.h>

namespace buttondriver::soak {

/// A TCP connection to a port of this machine. Nothing here waits, but for waitForData. A socket that has failed, or
/// whose peer has gone, is not open any more; sending and receiving then do nothing.
class LoopbackSocket {
public:
  LoopbackSocket() = default;
  /// With a `receive_buffer` above 0 the kernel keeps only about so many unread bytes.
  explicit LoopbackSocket(std::uint16_t port, int receive_buffer = 0);

  bool isOpen() const { return bool(_descriptor); }
  void close() { _descriptor.reset(); }
  /// Ends the connection without the farewell of TCP: the peer gets a reset.
  void reset();

  /// How many of `bytes` the kernel took.
  std::size_t send(std::string_view bytes);
  /// How many bytes came, at most `count`.
  std::size_t receive(char *place, std::size_t count);
  /// False when nothing has come within `limit_ms`.
  bool waitForData(int limit_ms) const;
  /// Whether the kernel of the peer has all that was sent, whoever reads it when.
  bool hasArrived() const;

private:
  std::size_t countOrClose(ssize_t result);

  OwnedDescriptor _descriptor;
};

} // namespace buttondriver::soak
