// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "outcome/outcome.h"

#include <QString>

#include <vector>

namespace buttondriver::buttonctl {

struct BatchLine {
  QString where; ///< what a message about this line begins with
  Steps steps;
};

/// All commands of `file`, empty lines and comments left out; or what is wrong with the first line that is wrong, after
/// its place.
Outcome<std::vector<BatchLine>> read_batch(const CommandTable &commands, const QString &file);

} // namespace buttondriver::buttonctl
