// SPDX-License-Identifier: Apache-2.0
#include "counted_memory.h"

#include <atomic>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

bool buttondriver::test::counts_memory() { return false; }
std::size_t buttondriver::test::taken_blocks() { return 0; }

#else

// The names under which the C library has these once more; Qt takes the memory of its values from here, not from `new`.
extern "C" void *__libc_malloc(std::size_t size);
extern "C" void *__libc_calloc(std::size_t count, std::size_t size);
extern "C" void *__libc_realloc(void *block, std::size_t size);

namespace {

std::atomic<std::size_t> count{0};

} // namespace

bool buttondriver::test::counts_memory() { return true; }
std::size_t buttondriver::test::taken_blocks() { return count; }

extern "C" {

void *malloc(std::size_t size) noexcept {
  ++count;
  return __libc_malloc(size);
}

void *calloc(std::size_t number, std::size_t size) noexcept {
  ++count;
  return __libc_calloc(number, size);
}

void *realloc(void *block, std::size_t size) noexcept {
  ++count;
  return __libc_realloc(block, size);
}

} // extern "C"

#endif
