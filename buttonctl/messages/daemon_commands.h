// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// The commands that concern the daemon itself: `buttonctl upload`, and so on.
Command sleep_command();
Command upload_command();
Command reconfig_command();
Command ping_command();

} // namespace buttondriver::buttonctl
