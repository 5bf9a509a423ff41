// SPDX-License-Identifier: Apache-2.0
// Counts what asks for memory of the heap; `new` does it through malloc. Whoever enlarges a block may get another one
// and counts as well.

#include "counts/pinned/next_function.h"
#include "counts/pinned/state.h"

// The names under which the C library has these once more. To look them up could allocate.
extern "C" void *__libc_malloc(std::size_t size);
extern "C" void *__libc_calloc(std::size_t count, std::size_t size);
extern "C" void *__libc_realloc(void *block, std::size_t size);
extern "C" void *__libc_memalign(std::size_t alignment, std::size_t size);

using buttondriver::counts::Call;
using buttondriver::counts::count;

BUTTONDRIVER_IN_FRONT_OF(void *, malloc, std::size_t size) {
  count(Call::allocation);
  return __libc_malloc(size);
}

BUTTONDRIVER_IN_FRONT_OF(void *, calloc, std::size_t number, std::size_t size) {
  count(Call::allocation);
  return __libc_calloc(number, size);
}

BUTTONDRIVER_IN_FRONT_OF(void *, realloc, void *block, std::size_t size) {
  count(Call::allocation);
  return __libc_realloc(block, size);
}

BUTTONDRIVER_IN_FRONT_OF(void *, aligned_alloc, std::size_t alignment, std::size_t size) {
  count(Call::allocation);
  return __libc_memalign(alignment, size);
}
