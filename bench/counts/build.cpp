// SPDX-License-Identifier: Apache-2.0
#include "counts/build.h"

#include <QtGlobal>

#include <gnu/libc-version.h>

namespace buttondriver::counts {

namespace {

/// The C library and Qt choose among functions by what the processor can do.
const char *vector_instructions() {
#if defined(__x86_64__)
  return __builtin_cpu_supports("avx2") ? " with AVX2" : " without AVX2";
#else
  return "";
#endif
}

} // namespace

std::string this_build() {
  return std::string(BUTTONDRIVER_COUNTS_BUILD) + ", Qt " + qVersion() + ", glibc " + ::gnu_get_libc_version() + ", " +
         BUTTONDRIVER_COUNTS_ARCHITECTURE + vector_instructions();
}

} // namespace buttondriver::counts
