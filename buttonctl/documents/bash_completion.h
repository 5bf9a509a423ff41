// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

#include <QString>

namespace buttondriver::buttonctl {

/// A script that bash reads to complete command lines of the tool: commands, options, the words that an argument can
/// be, names of files, and the messages and fields of `buttonctl message`.
QString bash_completion(const CommandTable &commands);

} // namespace buttondriver::buttonctl
