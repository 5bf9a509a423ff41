// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/commands.h"

#include <vector>

namespace buttondriver::buttonctl {

/// The commands that do more than to send messages, in the order of the help.
const std::vector<Command> &tool_commands();

} // namespace buttondriver::buttonctl
