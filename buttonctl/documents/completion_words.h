// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

#include <QStringList>

#include <vector>

/// What the rows of the commands tell a shell about what can be typed, for each shell's own words.
namespace buttondriver::buttonctl {

/// What can be typed at one place.
struct Completion {
  enum class Kind { unknown, words, file, folder, host, user };

  Kind kind = Kind::unknown;
  QStringList words = {}; ///< of Kind::words
};

struct CompletedArgument {
  QString name; ///< "SCREEN", or "on|off"
  Completion completion;
  bool repeats = false; ///< stands for all arguments that follow, too
};

/// The arguments of `command`, in their order; options among them are left out.
std::vector<CompletedArgument> arguments_of(const Command &command);

/// The value of `option`, which has one.
Completion value_of(const CommandOption &option);

/// All names of `option` as they are typed.
QStringList names_of(const CommandOption &option);
QStringList names_of(const std::vector<CommandOption> &options);

} // namespace buttondriver::buttonctl
