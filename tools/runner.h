#pragma once

#include "tools/command_line.h"

#include <QStringList>

namespace buttondriver::buttonctl {

/// Exit statuses of the program.
inline constexpr int exit_done = 0;
inline constexpr int exit_unreachable = 1; ///< no connection, a lost one, or no answer
inline constexpr int exit_bad_usage = 2;   ///< the command line, a file that it names, or a line of a batch

/// The whole program: does what `arguments` (those behind the program's name) ask for and returns the exit status.
/// Answers go to standard output; what goes wrong is one line on standard error.
int run(const QStringList &arguments, const char *version);

} // namespace buttondriver::buttonctl
