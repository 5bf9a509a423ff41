// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// `buttonctl state`
Command state_command();

} // namespace buttondriver::buttonctl
