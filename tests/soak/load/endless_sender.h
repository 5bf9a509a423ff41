// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "soak/load/loads.h"
#include "soak/load/loopback_socket.h"

#include <cstddef>
#include <string>
#include <utility>

namespace buttondriver::soak {

/// Connects to the target and counts that.
LoopbackSocket connect(Target &target, int receive_buffer = 0);

/// Sends the same bytes over and over, as much at a time as the kernel takes, and goes on where it was held up.
class EndlessSender {
public:
  explicit EndlessSender(std::string bytes) : _bytes(std::move(bytes)) {}

  /// False when nothing could be sent.
  bool sendSome(LoopbackSocket &socket, Target &target);
  void startOver() { _place = 0; }

private:
  std::string _bytes;
  std::size_t _place = 0;
};

/// Sends `bytes` over and over until the target stops; connects again whenever the connection is lost.
void send_without_end(Target &target, std::string bytes, int receive_buffer = 0);

} // namespace buttondriver::soak
