// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace buttondriver::buttonctl {

/// An option as the help, the page and the completion tell it. The texts live as long as the program.
struct CommandOption {
  const char *names; ///< without dashes; further names of the same option follow after commas
  const char *value; ///< what its value is called; null for a switch
  const char *meaning;
};

/// One of an option's names as it is typed: "-p" or "--port".
inline QString dashed(const QString &name) {
  return (name.size() == 1 ? QLatin1String("-") : QLatin1String("--")) + name;
}

} // namespace buttondriver::buttonctl
