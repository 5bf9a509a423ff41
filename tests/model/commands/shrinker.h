// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/commands/command.h"

#include <functional>

namespace buttondriver::test {

/// Makes a failing sequence as short and as plain as it can, as long as it still fails by `fails`: commands are
/// taken away, first many at a time; then messages are cut short, and their numbers brought nearer to zero.
/// `fails` is asked at most `most_tries` times.
Sequence shortest_failing(Sequence sequence, const std::function<bool(const Sequence &)> &fails, int most_tries = 1000);

} // namespace buttondriver::test
