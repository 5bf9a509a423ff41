// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <cstdint>

namespace buttondriver::fleet {

/// A TCP port of 127.0.0.1 that the system hands out, and that nobody else gets as long as this object lives: it is
/// bound and never listens. Whoever says that the address is to be used again may listen on it meanwhile. When nobody
/// does, connections are refused.
class HeldPort {
public:
  /// Throws std::runtime_error when there is none.
  HeldPort();

  std::uint16_t number() const { return _number; }
  /// A socket that listens on the port and does not block. Throws std::runtime_error when it cannot be had.
  OwnedDescriptor listen() const;

private:
  OwnedDescriptor _descriptor;
  std::uint16_t _number = 0;
};

/// The same under a number that is too high for select(2), where there are such: thousands of descriptors then leave
/// the low numbers to those who need them, such as libmosquitto.
OwnedDescriptor out_of_the_way(OwnedDescriptor descriptor);

} // namespace buttondriver::fleet
