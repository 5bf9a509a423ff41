// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "buttonctl/recording/recorder.h"

namespace buttondriver::buttonctl {

/// `buttonctl record`
Command record_command();

/// What its arguments ask for; of no meaning when they fail.
RecordingPlan read_recording_plan(ArgumentReader &arguments, const CommandContext &context);

} // namespace buttondriver::buttonctl
