// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/arguments/argument_reader.h"
#include "buttonctl/commands/request.h"
#include "buttonctl/commands/step.h"

#include <QString>

#include <vector>

/// The commands of the tool as a table: what each is called, what its help says, and what it sends.
namespace buttondriver::buttonctl {

struct CommandOption {
  const char *names; ///< without dashes; further names of the same option follow after commas
  const char *value; ///< what its value is called; null for a switch
  const char *meaning;
};

struct Command {
  const char *name;
  const char *arguments;
  const char *summary;  ///< one line
  const char *details;  ///< the rest of its help, whole lines
  const char *examples; ///< command lines, each a whole line
  std::vector<CommandOption> options;
  /// Turns the arguments into what is sent; what is wrong is kept in the reader. Null for a command that does more than
  /// to send messages, and that therefore cannot stand in a batch.
  Steps (*build)(ArgumentReader &arguments);
  /// Of such a command: puts the arguments into the request.
  void (*prepare)(ArgumentReader &arguments, Request &request) = nullptr;
};

/// In the order of the help.
const std::vector<Command> &commands();

/// Null when there is no such command.
const Command *find_command(const QString &name);

} // namespace buttondriver::buttonctl
