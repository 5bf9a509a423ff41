// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// `buttonctl watch`
Command watch_command();

} // namespace buttondriver::buttonctl
