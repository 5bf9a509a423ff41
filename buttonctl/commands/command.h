// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/arguments/argument_reader.h"
#include "buttonctl/arguments/command_option.h"
#include "buttonctl/session/endpoint.h"
#include "buttonctl/session/panel_address.h"
#include "buttonctl/session/step.h"

#include <QString>

#include <functional>
#include <variant>
#include <vector>

/// What a command of the tool is: a row that is declared beside the feature that it starts. The program's table of such
/// rows is all that the command line, the help, the page in docs/ and the completion of the shell know of commands.
namespace buttondriver::buttonctl {

struct Command;
/// In the order of the help.
using CommandTable = std::vector<Command>;

/// What a command works with beside its own arguments.
struct CommandContext {
  Endpoint endpoint;
  bool dry_run;
  const CommandTable &commands; ///< for a command that reads lines with further commands
  /// Where the virtual panel answers; a failure when the environment says it wrongly, which only matters to a command
  /// that looks: see panel_of().
  Outcome<QString> panel = default_panel_url();
};

/// Runs a command whose arguments were good, prints what goes wrong, and returns the exit status.
using Action = std::function<int()>;

/// Turns the arguments into what is sent. What is wrong is kept in the reader; the result has no meaning then.
using StepsBuilder = Steps (*)(ArgumentReader &arguments);
/// Turns the arguments into what is run; failures as above.
using ActionBuilder = Action (*)(ArgumentReader &arguments, const CommandContext &context);

struct Command {
  const char *name;
  const char *arguments; ///< words in capitals stand for what the user writes, "a|b" for one of several words
  const char *summary;   ///< one line, a sentence without its capital letter and full stop
  QString details;       ///< the rest of its help, whole lines; those that start with two blanks are kept apart
  const char *examples;  ///< command lines, each a whole line
  std::vector<CommandOption> options;
  /// The first for a command that only sends messages, and so can be a line of a batch; the second for any other.
  std::variant<StepsBuilder, ActionBuilder> work;

  bool onlySends() const { return std::holds_alternative<StepsBuilder>(work); }
};

/// Null when there is no such command. The result is part of `commands`.
const Command *find_command(const CommandTable &commands, const QString &name);

/// For a command that does nothing that --dry-run could print.
void refuse_dry_run(ArgumentReader &arguments, const CommandContext &context);

/// For a command that looks at the virtual panel: "http://HOST:PORT"; of no meaning when the arguments fail.
QString panel_of(ArgumentReader &arguments, const CommandContext &context);

} // namespace buttondriver::buttonctl
