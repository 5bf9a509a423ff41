// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// The commands of LEDs and indicators: `buttonctl led`, and so on.
Command led_command();
Command status_command();
Command toggle_command();

} // namespace buttondriver::buttonctl
