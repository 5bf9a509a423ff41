// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"

namespace buttondriver::buttonctl {

/// `buttonctl message`: any message of the catalogue, its fields by name.
Command message_command();

} // namespace buttondriver::buttonctl
