// SPDX-License-Identifier: Apache-2.0
#include "fleet/running/bridge_process.h"

#include "fleet/measure/wanted_panels.h"

#include <stdexcept>
#include <utility>
#include <vector>

namespace buttondriver::fleet {

BridgeProcess::BridgeProcess(std::string program, std::uint16_t broker_port, const PanelFleet &fleet)
    : _program(std::move(program)), _fleet(fleet) {
  std::string lines = "[broker]\nhost = 127.0.0.1\nport = " + std::to_string(broker_port) + "\n\n[panels]\n";
  for (std::size_t i = 0; i < fleet.size(); ++i)
    lines += WantedPanels::nameOf(i) + " = 127.0.0.1:" + std::to_string(fleet.port(i)) + '\n';
  _configuration = _folder.write("fleet.ini", lines);
}

void BridgeProcess::start() {
  constexpr std::chrono::seconds limit{60};
  _process = std::make_unique<bench::ChildProcess>(
      std::vector<std::string>{_program, "--config", _configuration, "--quiet"}, std::vector<std::string>{});
  if (!_fleet.waitUntil([this] { return _fleet.counts().connected == _fleet.size(); }, limit))
    throw std::runtime_error(_program + " cannot be started, or does not reach all panels");
}

} // namespace buttondriver::fleet
