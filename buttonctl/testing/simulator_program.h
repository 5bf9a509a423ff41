// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QString>

namespace buttondriver::buttonctl {

/// The path of the virtual panel's program: of `asked_for`, a path or a name in PATH, when that is not empty; else of
/// the one beside this program; else of the one in PATH.
Outcome<QString> simulator_program(const QString &asked_for);

} // namespace buttondriver::buttonctl
