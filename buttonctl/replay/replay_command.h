// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// `buttonctl replay`
Command replay_command();

/// What is replayed, where, and how.
struct ReplayPlan {
  QString file;
  double speed; ///< so many times as fast as it was recorded, above 0
  Endpoint endpoint;
  bool dry_run;
};

/// What the arguments of the command ask for; of no meaning when they fail.
ReplayPlan read_replay_plan(ArgumentReader &arguments, const CommandContext &context);

} // namespace buttondriver::buttonctl
