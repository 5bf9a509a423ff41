// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/arguments/command_option.h"
#include "outcome/outcome.h"

#include <QCommandLineParser>
#include <QStringList>

#include <vector>

namespace buttondriver::buttonctl {

void add_options(QCommandLineParser &parser, const std::vector<CommandOption> &options);

/// Has `parser` read `arguments`. `help` is the command line that a failure names for more about the options.
Outcome<Done> parse_options(QCommandLineParser &parser, const QStringList &arguments, const QString &help);

} // namespace buttondriver::buttonctl
