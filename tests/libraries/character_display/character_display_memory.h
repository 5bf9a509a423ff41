// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace buttondriver::simulator {

/// Two virtual character displays, and a block of memory in place of their registers. Two stores of the same word leave
/// the same memory, so the driver's stores pass through store(), which performs them in the block and shows each
/// one to the displays.
///
/// Any thread may use it.
class CharacterDisplayMemory {
public:
  static constexpr std::size_t display_count = 2;

  /// One store, its place in bytes from the base.
  struct Store {
    std::ptrdiff_t offset;
    std::uint32_t word;
  };

  CharacterDisplayMemory();

  /// The block's first byte, for the driver. The block ends after the data register.
  void *registerBase() { return _block.data(); }

  /// Stores `word` at `address`. A place outside the block is recorded but not written.
  void store(volatile std::uint32_t *address, std::uint32_t word);

  /// All stores so far, in their order.
  std::vector<Store> stores() const;

  /// Waits until there were at least `count` stores; false when there are fewer after `limit`.
  bool waitForStores(std::size_t count, std::chrono::milliseconds limit) const;

  /// The 32-bit word that the block holds at `offset` bytes from the base, which must be within the block.
  std::uint32_t wordAt(std::size_t offset) const;

  /// The 20 characters of one line, 0 or 1, of display 0 (channel 0) or 1 (any other channel).
  std::string line(std::size_t display, std::size_t line) const;

private:
  struct Display {
    std::string characters;
    std::size_t cursor = 0;
    void take(char character);
  };

  void show(std::uint32_t word);

  mutable std::mutex _mutex;
  mutable std::condition_variable _stored;
  std::vector<std::uint32_t> _block;
  std::vector<Store> _stores;
  std::uint32_t _last_word;
  std::array<Display, display_count> _displays;
};

} // namespace buttondriver::simulator
