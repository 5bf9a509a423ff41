// SPDX-License-Identifier: Apache-2.0
#include "counted_allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> count{0};

} // namespace

std::size_t buttondriver::test::allocations() { return count; }

// In place of those of the library; its other forms come here.
void *operator new(std::size_t size) {
  ++count;
  if (void *const memory = std::malloc(size > 0 ? size : 1))
    return memory;
  throw std::bad_alloc();
}
void operator delete(void *memory) noexcept { std::free(memory); }
void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }
