// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <cstdlib>

namespace buttondriver::fuzz {

/// Ends the program when what must always be true is not: that is how a target reports a finding of its own.
inline void require(bool condition, const char *fact) {
  if (condition)
    return;
  std::fprintf(stderr, "fuzz: this must hold: %s\n", fact);
  std::abort();
}

} // namespace buttondriver::fuzz
