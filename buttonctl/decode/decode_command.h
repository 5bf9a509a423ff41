// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// `buttonctl decode`
Command decode_command();

} // namespace buttondriver::buttonctl
