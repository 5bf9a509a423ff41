// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// All commands of the program, in the order of the help.
const CommandTable &command_table();

} // namespace buttondriver::buttonctl
