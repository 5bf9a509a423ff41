// SPDX-License-Identifier: Apache-2.0
#include "counted_allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> count{0};

} // namespace

std::size_t buttondriver::test::allocations() { return count; }

// All but those for aligned memory: sanitizers have each form, and want memory given back in the form it was taken in.
void *operator new(std::size_t size) {
  ++count;
  if (void *const memory = std::malloc(size > 0 ? size : 1))
    return memory;
  throw std::bad_alloc();
}
void *operator new[](std::size_t size) { return ::operator new(size); }
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
  ++count;
  return std::malloc(size > 0 ? size : 1);
}
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept { return ::operator new(size, std::nothrow); }
void operator delete(void *memory) noexcept { std::free(memory); }
void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void *memory) noexcept { std::free(memory); }
void operator delete[](void *memory, std::size_t) noexcept { std::free(memory); }
