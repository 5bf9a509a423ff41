// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace buttondriver::buttonctl {

/// What a message about a line of `file` begins with: "FILE:LINE: ". Lines count from 1.
inline QString line_place(const QString &file, int line) {
  return QStringLiteral("%1:%2: ").arg(file, QString::number(line));
}

} // namespace buttondriver::buttonctl
