// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace buttondriver::yardsticks {

/// A connection to a server of this machine. Everything here waits until it is done, and throws std::runtime_error when
/// the server does not do its part within a minute.
class Client {
public:
  explicit Client(std::uint16_t port);

  /// Keeps reading what the server answers meanwhile, so that neither waits for the other for good.
  void send(std::string_view bytes);
  /// At least one byte has come since the last take(), and what that is.
  std::string take();
  /// As many bytes have come since the last call, and are thrown away; more than those are a fault too.
  void expect(std::size_t bytes);

private:
  void waitFor(short events);
  void receive();

  OwnedDescriptor _descriptor;
  std::string _received;
};

} // namespace buttondriver::yardsticks
