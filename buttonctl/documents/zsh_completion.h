// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

#include <QString>

namespace buttondriver::buttonctl {

/// A function that zsh loads to complete command lines of the tool; it offers what bash_completion() does, and tells
/// what commands, options and fields mean.
QString zsh_completion(const CommandTable &commands);

} // namespace buttondriver::buttonctl
