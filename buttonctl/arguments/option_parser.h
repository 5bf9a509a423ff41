// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/commands.h"
#include "outcome/outcome.h"

#include <QCommandLineParser>
#include <QStringList>

#include <optional>
#include <vector>

namespace buttondriver::buttonctl {

void add_options(QCommandLineParser &parser, const std::vector<CommandOption> &options);

/// Nothing, or what the parser itself has found. `help` is the command line that tells the options.
std::optional<Failure> parse_options(QCommandLineParser &parser, const QStringList &arguments, const QString &help);

} // namespace buttondriver::buttonctl
