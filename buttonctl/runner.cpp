// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/runner.h"

#include "buttonctl/command_table.h"
#include "buttonctl/commands/command_line.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

namespace buttondriver::buttonctl {

int run(const QStringList &arguments) {
  const Outcome<Action> action = parse_command_line(command_table(), arguments);
  if (!action)
    return report(action.failure(), exit_bad_usage);
  const int status = (*action)();
  if (!flush_output() && status == exit_done)
    return report(Failure{QStringLiteral("cannot write to standard output; is its disk full?")}, exit_unreachable);
  return status;
}

} // namespace buttondriver::buttonctl
