// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fuzz/support/require.h"

#include <cstdio>

namespace buttondriver::fuzz {

/// Throws away what is printed from now on, for the rest of the process. Findings and the fuzzer's own
/// lines go to standard error.
inline void drop_standard_output() {
  require(std::freopen("/dev/null", "w", stdout) != nullptr, "standard output can be thrown away");
}

} // namespace buttondriver::fuzz
