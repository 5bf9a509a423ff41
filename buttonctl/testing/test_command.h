// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "buttonctl/testing/test_plan.h"

namespace buttondriver::buttonctl {

/// `buttonctl test`
Command test_command();

/// What its arguments ask for; of no meaning when they fail.
TestPlan read_test_plan(ArgumentReader &arguments, const CommandContext &context);

} // namespace buttondriver::buttonctl
