// SPDX-License-Identifier: Apache-2.0
#include "libraries/character_display/character_display_memory.h"

#include "character_display/character_display_register.h"

namespace buttondriver::simulator {

using namespace character_display;

namespace {

constexpr std::size_t word_size = sizeof(std::uint32_t);
constexpr std::size_t character_count = std::size_t{columns} * lines;
constexpr std::array<Lane, CharacterDisplayMemory::display_count> lanes{channel_0, other_channel};

} // namespace

CharacterDisplayMemory::CharacterDisplayMemory()
    : _block(data_register_offset / word_size + 1), _last_word(strobes_at_rest) {
  for (Display &display : _displays)
    display.characters.assign(character_count, ' ');
}

void CharacterDisplayMemory::store(volatile std::uint32_t *address, std::uint32_t word) {
  const std::lock_guard lock(_mutex);
  const auto place = reinterpret_cast<std::intptr_t>(address);
  const auto base = reinterpret_cast<std::intptr_t>(_block.data());
  const std::ptrdiff_t offset = place - base;
  const auto block_size = static_cast<std::ptrdiff_t>(_block.size() * word_size);
  if (offset >= 0 && offset < block_size)
    *address = word;
  if (offset == static_cast<std::ptrdiff_t>(data_register_offset))
    show(word);
  _stores.push_back({offset, word});
  _stored.notify_all();
}

std::vector<CharacterDisplayMemory::Store> CharacterDisplayMemory::stores() const {
  const std::lock_guard lock(_mutex);
  return _stores;
}

bool CharacterDisplayMemory::waitForStores(std::size_t count, std::chrono::milliseconds limit) const {
  std::unique_lock lock(_mutex);
  return _stored.wait_for(lock, limit, [this, count] { return _stores.size() >= count; });
}

std::uint32_t CharacterDisplayMemory::wordAt(std::size_t offset) const {
  const std::lock_guard lock(_mutex);
  return _block.at(offset / word_size);
}

std::string CharacterDisplayMemory::line(std::size_t display, std::size_t line) const {
  const std::lock_guard lock(_mutex);
  return _displays.at(display).characters.substr(line * columns, columns);
}

void CharacterDisplayMemory::show(std::uint32_t word) {
  const std::uint32_t risen = word & ~_last_word;
  for (std::size_t i = 0; i < lanes.size(); ++i)
    // The end of the pulse: by then the data must have been there.
    if (risen & lanes[i].strobe)
      _displays[i].take(static_cast<char>(word >> lanes[i].data_shift & 0xFF));
  _last_word = word;
}

void CharacterDisplayMemory::Display::take(char character) {
  if (character == home) {
    cursor = 0;
    return;
  }
  characters[cursor] = character;
  cursor = (cursor + 1) % character_count;
}

} // namespace buttondriver::simulator
