// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace buttondriver::buttonctl {

/// What `arguments`, those after the program's name, ask for. Files that a command names may be read here already.
/// `commands` must live as long as the action.
Outcome<Action> parse_command_line(const CommandTable &commands, const QStringList &arguments);

/// One line of a batch, UTF-8; an empty line or a comment yields no steps. Names of files are relative to `folder`, or
/// to the current one when that is empty.
Outcome<Steps> parse_batch_line(const CommandTable &commands, const QByteArray &line,
                                const QString &folder = QString());

} // namespace buttondriver::buttonctl
