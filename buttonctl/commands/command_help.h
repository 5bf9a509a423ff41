// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/commands.h"

#include <QString>

namespace buttondriver::buttonctl {

/// Options that stand before the command or among its arguments, but not in the lines of a batch.
const std::vector<CommandOption> &general_options();

/// What `buttonctl --help` prints.
QString general_help();

/// What `buttonctl COMMAND --help` prints.
QString command_help(const Command &command);

} // namespace buttondriver::buttonctl
