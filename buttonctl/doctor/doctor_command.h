// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "buttonctl/doctor/doctor.h"

namespace buttondriver::buttonctl {

/// `buttonctl doctor`
Command doctor_command();

/// What its arguments ask for; of no meaning when they fail.
Examination read_examination(ArgumentReader &arguments, const CommandContext &context);

} // namespace buttondriver::buttonctl
