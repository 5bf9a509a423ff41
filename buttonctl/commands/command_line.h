// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/request.h"
#include "buttonctl/commands/step.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace buttondriver::buttonctl {

/// `arguments` are those behind the program's name. Files that a command names are read and converted here.
Outcome<Request> parse_command_line(const QStringList &arguments);

/// One line of a batch, UTF-8; an empty line or a comment yields no steps. Names of files are relative to `folder`, or
/// to the current one when that is empty.
Outcome<Steps> parse_batch_line(const QByteArray &line, const QString &folder = QString());

} // namespace buttondriver::buttonctl
