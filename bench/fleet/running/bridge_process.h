// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fleet/panels/panel_fleet.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <cstdint>
#include <memory>
#include <string>
#include <sys/types.h>

namespace buttondriver::fleet {

/// The bridge, with a configuration of its own that names all panels of a fleet: "p0" and so on.
class BridgeProcess {
public:
  /// Does not start it yet. `fleet` outlives this object.
  BridgeProcess(std::string program, std::uint16_t broker_port, const PanelFleet &fleet);

  /// Returns when it has reached all panels. Throws std::runtime_error when it does not.
  void start();
  void stop() { _process.reset(); }
  pid_t pid() const { return _process->pid(); }

private:
  const std::string _program;
  const PanelFleet &_fleet;
  test::TemporaryFolder _folder;
  std::string _configuration;
  std::unique_ptr<bench::ChildProcess> _process;
};

} // namespace buttondriver::fleet
