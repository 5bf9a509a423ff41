// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

const Command *find_command(const CommandTable &commands, const QString &name) {
  for (const Command &command : commands)
    if (name == QLatin1String(command.name))
      return &command;
  return nullptr;
}

void refuse_dry_run(ArgumentReader &arguments, const CommandContext &context) {
  if (context.dry_run)
    arguments.fail(QStringLiteral("there is nothing to print with --dry-run"));
}

QString panel_of(ArgumentReader &arguments, const CommandContext &context) {
  if (!context.panel) {
    arguments.fail(context.panel.failure().text);
    return {};
  }
  return *context.panel;
}

} // namespace buttondriver::buttonctl
