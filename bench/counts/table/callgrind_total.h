// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace buttondriver::counts {

/// How many instructions a file of callgrind's tells of. Throws std::runtime_error when there is no such number in it.
double callgrind_total(std::string_view dump);

} // namespace buttondriver::counts
