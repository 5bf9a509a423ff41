// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace buttondriver::counts {

/// What the instructions of this build and on this machine depend on, apart from the sources: one line.
std::string this_build();

} // namespace buttondriver::counts
