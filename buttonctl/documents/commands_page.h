// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "outcome/outcome.h"

#include <QString>

namespace buttondriver::buttonctl {

/// The commands as Markdown: a heading for each, how it is called, what its help tells, its options and examples.
QString commands_section(const CommandTable &commands);

/// `page` with the commands as they are now between its two marks; a failure when it does not have both.
Outcome<QString> with_commands(const QString &page, const CommandTable &commands);

} // namespace buttondriver::buttonctl
