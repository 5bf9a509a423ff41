// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fleet/panels/panel_state.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace buttondriver::fleet {

/// A command for one panel, as it is published.
struct Wish {
  std::string topic;
  std::string payload;
};

/// Makes commands for many panels, and knows what each of them has to show in the end. The same numbers come each time.
class WantedPanels {
public:
  explicit WantedPanels(std::size_t count) : _states(count) {}

  /// The name of a panel in topics and in the bridge's configuration: "p0" and so on.
  static std::string nameOf(std::size_t panel) { return 'p' + std::to_string(panel); }

  /// For any panel: half of them a line of text whose text is a stamp, the others a lamp on, off or blinking.
  Wish next();
  /// A line of text for this panel.
  Wish line(std::size_t panel, std::size_t screen, std::size_t line, const std::string &text);

  const std::vector<PanelState> &states() const { return _states; }
  /// All topics that there have been, with the last payload of each.
  const std::unordered_map<std::string, std::string> &topics() const { return _topics; }

private:
  std::size_t any(std::size_t count);
  Wish wish(std::size_t panel, const std::string &tail, const std::string &payload);

  std::vector<PanelState> _states;
  std::unordered_map<std::string, std::string> _topics;
  std::mt19937 _numbers{1};
};

} // namespace buttondriver::fleet
