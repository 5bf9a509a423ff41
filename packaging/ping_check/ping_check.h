// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace buttondriver {

/// Whom to ask, and how long that may take in all.
struct PingCheck {
  std::string address; ///< IPv4 or IPv6, as a number; names are not resolved
  std::string port;    ///< 1 to 65535, in decimal
  std::chrono::milliseconds time;
};

/// Connects, sends a ping and waits for the answer. Where the connection is refused, `before_retry` is called and the
/// connection is tried again, until the time is over. Returns an empty text when a ping reply came, otherwise why none
/// did: one line, without a line feed. Blocks the calling thread; needs no Qt.
std::string fault_of(const PingCheck &check, const std::function<void()> &before_retry);

} // namespace buttondriver
