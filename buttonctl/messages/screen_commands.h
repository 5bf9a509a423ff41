// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// The commands that change what a screen shows: `buttonctl text`, and so on.
Command text_command();
Command subtext_command();
Command image_command();
Command blackout_command();

} // namespace buttondriver::buttonctl
