// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "buttonctl/scenario/scenario_runner.h"

namespace buttondriver::buttonctl {

/// `buttonctl run`
Command run_command();

/// What its arguments ask for; of no meaning when they fail.
ScenarioPlan read_scenario_plan(ArgumentReader &arguments, const CommandContext &context);

} // namespace buttondriver::buttonctl
