// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/arguments/argument_reader.h"
#include "buttonctl/scenario/expectations/expectation.h"

namespace buttondriver::buttonctl {

/// What the expectation `name` asks of the panel's state, such as "expect-led"; nothing when it asks something else.
std::optional<StateTest> state_test(const QString &name, ArgumentReader &arguments);

} // namespace buttondriver::buttonctl
