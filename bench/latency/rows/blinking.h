// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "latency/rows/rows.h"
#include "support/device/device_log.h"

#include <cstdint>
#include <vector>

namespace buttondriver::latency {

using bench::LedCommand;

/// What of a panel's blinking is looked at: buttons 0 to `buttons` - 1, all set to blink at once.
struct Blinking {
  int buttons;
  std::int64_t half_period_ns;
};

/// Whether the command is for this button's LED.
bool is_change_of_button(const LedCommand &command, int button);

/// Part of a run.
struct Window {
  std::int64_t from_ns;
  std::int64_t to_ns;
};

/// By how many seconds the periods that end in `window`, from going on to going on again, differ from what they should
/// be. A period that should have ended in it, and has not, counts as if it ended with the window.
Values period_deviations(const std::vector<LedCommand> &commands, const Blinking &blinking, const Window &window);

/// For each change of the first button in `window`: how many seconds lie between the first and the last of the buttons
/// to change. A button that does not change likewise within half a period around that is missing. The last half period
/// of the window is left out: its changes may still be on their way.
Values step_spreads(const std::vector<LedCommand> &commands, const Blinking &blinking, const Window &window);

} // namespace buttondriver::latency
