// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fleet/panels/held_port.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <cstdint>
#include <memory>
#include <string>
#include <sys/types.h>

namespace buttondriver::fleet {

/// Debian's mosquitto on a port of its own, with a configuration and a folder of its own. It keeps its port over a
/// restart.
class BrokerProcess {
public:
  /// Started. `more_lines` go into its configuration. Throws std::runtime_error when it does not start.
  explicit BrokerProcess(const std::string &more_lines = {});

  std::uint16_t port() const { return _port.number(); }
  pid_t pid() const { return _process->pid(); }

  /// Ends in good order, keeping its retained messages in a file, and starts again.
  void restart();
  /// Ends without warning, and starts again with nothing.
  void crash();

private:
  void start();

  HeldPort _port;
  test::TemporaryFolder _folder;
  std::string _configuration;
  std::unique_ptr<bench::ChildProcess> _process;
};

} // namespace buttondriver::fleet
