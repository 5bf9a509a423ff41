// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QString>
#include <QStringList>

namespace buttondriver::buttonctl {

/// The words of one line, quoted as in a shell: '...' keeps everything, "..." keeps everything but a backslash before
/// " or \, elsewhere a backslash keeps the next character. A # at the start of a word begins a comment. Nothing is
/// expanded.
Outcome<QStringList> split_line(const QString &line);

} // namespace buttondriver::buttonctl
