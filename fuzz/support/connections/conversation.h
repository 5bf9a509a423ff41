// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fuzz/support/connections/client.h"

#include <QtGlobal>

#include <chrono>

namespace buttondriver {
class ClientButtondriver;
}

namespace buttondriver::fuzz {

/// A client and what the server has done with it.
struct Conversation {
  Conversation(quint16 port, std::uint8_t host) : client(port, host) {}

  /// Whether the server still has to deliver or to answer something.
  bool isServed() const { return server_end != nullptr; }

  Client client;
  ClientButtondriver *server_end = nullptr; ///< null before it is accepted, and when it is gone
  bool was_accepted = false;
  bool has_place = false;   ///< was not refused
  bool was_evicted = false; ///< gave its place to another one
  bool is_held = false;
  bool may_miss_answers = false;
  bool has_spoken = false;
  qint64 pings = 0; ///< that were delivered
  std::chrono::nanoseconds used{};
  int rounds_with_more = 0; ///< in which it had something to deliver all the time, one after the other
};

} // namespace buttondriver::fuzz
