// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <dlfcn.h>

// Defines the function `function` of the system, under the name pinned_`function` in this file: how the system's
// headers declare it, or as which other one, depends on the machine.
#define BUTTONDRIVER_IN_FRONT_OF(result, function, ...)                                                                \
  extern "C" result pinned_##function(__VA_ARGS__) __asm__(#function);                                                 \
  result pinned_##function(__VA_ARGS__)

namespace buttondriver::counts {

/// The function that one of this library stands in front of.
template <class Function> Function *next_function(const char *name) {
  return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace buttondriver::counts
