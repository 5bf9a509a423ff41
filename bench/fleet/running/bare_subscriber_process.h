// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"
#include "fleet/panels/delays.h"
#include "support/child_process.h"

#include <cstdint>
#include <memory>
#include <sys/types.h>

namespace buttondriver::fleet {

/// The program bare_subscriber.cpp, which gets all that is published for panels.
class BareSubscriberProcess {
public:
  /// Returns when it has subscribed. Throws std::runtime_error when it does not.
  explicit BareSubscriberProcess(std::uint16_t broker_port);

  pid_t pid() const { return _process->pid(); }
  struct Seen {
    std::size_t messages = 0;
    Delays delays; ///< its count is not told
  };
  /// Ends it, and returns what it has seen. Throws std::runtime_error when it does not tell.
  Seen end();

private:
  OwnedDescriptor _output;
  std::unique_ptr<bench::ChildProcess> _process;
};

} // namespace buttondriver::fleet
