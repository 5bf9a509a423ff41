// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

#include <QString>

namespace buttondriver::buttonctl {

/// Options that stand before the command or among its arguments, but not in the lines of a batch.
const std::vector<CommandOption> &general_options();

/// The one that stands before the command only.
CommandOption version_option();

/// "-p, --port PORT"
QString spelled(const CommandOption &option);

/// What `buttonctl --help` prints.
QString general_help(const CommandTable &commands);

/// What `buttonctl COMMAND --help` prints.
QString command_help(const Command &command);

} // namespace buttondriver::buttonctl
