// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "counts/run/message_kinds.h"
#include "counts/table/table.h"

#include <string>
#include <vector>

namespace buttondriver::counts {

/// Starts the daemon `program` under callgrind, sends it messages of each kind, and tells what one of them costs.
/// Throws std::runtime_error when the daemon cannot be started, or does not get on.
std::vector<Row> count_all(const std::string &program, const std::vector<MessageKind> &kinds);

} // namespace buttondriver::counts
