// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

namespace buttondriver::buttonctl {

/// The whole program: does what `arguments` (those after the program's name) ask for and returns the exit status.
/// Answers go to standard output; what goes wrong is one line on standard error.
int run(const QStringList &arguments);

} // namespace buttondriver::buttonctl
