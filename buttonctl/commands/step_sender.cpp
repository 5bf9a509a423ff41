// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/step_sender.h"

#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"
#include "buttonctl/session/session.h"

namespace buttondriver::buttonctl {

int send_steps(const Steps &steps, const CommandContext &context) {
  Session session(context.endpoint, context.dry_run);
  if (const auto started = session.start(); !started)
    return report(started.failure(), exit_unreachable);
  if (const auto performed = session.perform(steps); !performed)
    return report(performed.failure(), exit_unreachable);
  if (const auto finished = session.finish(); !finished)
    return report(finished.failure(), exit_unreachable);
  return exit_done;
}

} // namespace buttondriver::buttonctl
