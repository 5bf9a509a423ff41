// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/arguments/argument_reader.h"
#include "buttonctl/scenario/expectations/expectation.h"

namespace buttondriver::buttonctl {

/// Of expect-log, expect-no-error and expect-message; nothing when the expectation `name` asks something else.
std::optional<FeedTest> feed_test(const QString &name, ArgumentReader &arguments);

/// Whether it is the one that no waiting makes true again.
bool is_about_faults(const QString &name);

/// Whether a line of the daemon's log, from `source` as the panel has it, tells about a fault.
bool tells_a_fault(const QString &source, const QString &text);

} // namespace buttondriver::buttonctl
