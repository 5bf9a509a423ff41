// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

namespace buttondriver::panel {

/// Whether an address takes no more than 32 bits. On a 32-bit machine each one does.
inline bool has_low_address(const void *address) {
  return (std::uint64_t{reinterpret_cast<std::uintptr_t>(address)} >> 32) == 0;
}

/// Memory for words below 4 GiB, where 32 bits can address it. It is taken when it is first needed, and grows.
class LowMemory {
public:
  /// More is never given: 16 times what one transfer of pixels can hold.
  static constexpr std::size_t most_words = std::size_t{1} << 20;

  LowMemory() = default;
  ~LowMemory() { release(); }
  LowMemory(const LowMemory &) = delete;
  LowMemory &operator=(const LowMemory &) = delete;

  /// Room for `count` words, which stays this object's and holds until the next call; what it held before is lost. Null
  /// when there are more than most_words, or no such memory can be had.
  std::uint16_t *words(std::size_t count);

private:
  void release();

  void *_memory = nullptr;
  std::size_t _bytes = 0;
};

} // namespace buttondriver::panel
