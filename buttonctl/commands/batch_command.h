// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// `buttonctl batch`
Command batch_command();

} // namespace buttondriver::buttonctl
