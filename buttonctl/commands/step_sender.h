// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// Performs `steps` over a connection of their own, and waits until they have arrived. Prints what goes wrong; returns
/// the exit status.
int send_steps(const Steps &steps, const CommandContext &context);

} // namespace buttondriver::buttonctl
