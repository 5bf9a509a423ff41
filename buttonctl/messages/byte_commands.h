// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// The commands that take bytes as they are: `buttonctl null` and `buttonctl raw`.
Command null_command();
Command raw_command();

} // namespace buttondriver::buttonctl
