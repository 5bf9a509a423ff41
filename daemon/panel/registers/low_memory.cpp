// SPDX-License-Identifier: Apache-2.0
#include "panel/registers/low_memory.h"

#include <sys/mman.h>

namespace buttondriver::panel {

namespace {

/// Memory at `wish`, or wherever the kernel likes; null when that is not below 4 GiB.
void *map_low(void *wish, std::size_t bytes, int flag) {
  void *const memory =
      ::mmap(wish, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | flag, /*fd=*/-1, /*offset=*/0);
  if (memory == MAP_FAILED)
    return nullptr;
  if (has_low_address(static_cast<const char *>(memory) + bytes - 1))
    return memory;
  ::munmap(memory, bytes);
  return nullptr;
}

void *map_low(std::size_t bytes) {
#ifdef MAP_32BIT
  if (void *const memory = map_low(nullptr, bytes, MAP_32BIT))
    return memory;
#endif
  // The kernel follows a wish where the place is free. It is a place and no object yet.
  // NOLINTBEGIN(performance-no-int-to-ptr)
  constexpr std::uint64_t step = std::uint64_t{1} << 28;
  for (std::uint64_t place = step; place < 16 * step; place += step)
    if (void *const memory = map_low(reinterpret_cast<void *>(static_cast<std::uintptr_t>(place)), bytes, 0))
      return memory;
  // NOLINTEND(performance-no-int-to-ptr)
  return nullptr;
}

} // namespace

std::uint16_t *LowMemory::words(std::size_t count) {
  if (count > most_words)
    return nullptr;
  if (const std::size_t bytes = count * sizeof(std::uint16_t); bytes > _bytes) {
    release();
    _memory = map_low(bytes);
    _bytes = _memory ? bytes : 0;
  }
  return static_cast<std::uint16_t *>(_memory);
}

void LowMemory::release() {
  if (_memory)
    ::munmap(_memory, _bytes);
  _memory = nullptr;
  _bytes = 0;
}

} // namespace buttondriver::panel
