// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "outcome/outcome.h"

#include <QString>

#include <string>

namespace buttondriver::buttonctl {

/// The commands in the macros of man(7): a heading for each, how it is called, what its help tells, its options and
/// examples.
std::string commands_manual(const CommandTable &commands);

/// The manual page with the commands as they are now between its two marks; a failure when it does not have both.
Outcome<QString> with_commands_manual(const QString &page, const CommandTable &commands);

} // namespace buttondriver::buttonctl
