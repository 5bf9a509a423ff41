// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/step.h"
#include "outcome/outcome.h"

#include <QString>

#include <vector>

namespace buttondriver::buttonctl {

struct BatchLine {
  QString where; ///< what a message about this line begins with
  Steps steps;
};

/// "FILE:LINE: "; lines count from 1.
QString batch_place(const QString &file, int line);

/// All commands of `file`, empty lines and comments left out; or what is wrong with the first line that is wrong, its
/// place in front.
Outcome<std::vector<BatchLine>> read_batch(const QString &file);

} // namespace buttondriver::buttonctl
