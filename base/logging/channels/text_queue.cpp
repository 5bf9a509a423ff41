// SPDX-License-Identifier: Apache-2.0
#include "logging/channels/text_queue.h"

namespace buttondriver {

std::string_view TextQueue::front() const {
  if (isEmpty())
    return {};
  return {_blocks.front().get() + _begin, std::min(_size, block_size - _begin)};
}

void TextQueue::removeFront(std::size_t count) {
  _begin += count;
  _size -= count;
  if (_size == 0) {
    clear();
  } else if (_begin == block_size) {
    _blocks.pop_front();
    _begin = 0;
  }
}

void TextQueue::clear() {
  if (_blocks.empty())
    return;
  _blocks.erase(_blocks.begin(), _blocks.end() - 1);
  _begin = 0;
  _size = 0;
  useBlock(_blocks.back().get());
}

void TextQueue::appendToSeveral(std::string_view text) {
  while (!text.empty()) {
    if (_room == 0) {
      _blocks.emplace_back(new char[block_size]); // not make_unique, which would fill it with zeros
      useBlock(_blocks.back().get());
    }
    const std::string_view part = text.substr(0, _room);
    appendHere(part);
    text.remove_prefix(part.size());
  }
}

/// From its beginning.
void TextQueue::useBlock(char *block) {
  _end = block;
  _room = block_size;
}

} // namespace buttondriver
