// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <deque>
#include <memory>
#include <string_view>

namespace buttondriver {

/// Bytes that wait to be written, first in, first out, in blocks of memory. One block is kept when it is empty, so that
/// nothing is allocated as long as few bytes wait.
class TextQueue {
public:
  static constexpr std::size_t block_size = 64 * 1024;

  bool isEmpty() const { return _size == 0; }
  std::size_t size() const { return _size; }

  void append(std::string_view text) {
    if (text.size() > _room)
      return appendToSeveral(text);
    appendHere(text);
  }

  /// Some of the first bytes, as they lie together; empty when the queue is. Valid until the queue is changed.
  std::string_view front() const;
  /// Removes the first `count` bytes, which front() has shown.
  void removeFront(std::size_t count);
  void clear();

private:
  void appendHere(std::string_view text) {
    std::memcpy(_end, text.data(), text.size());
    _end += text.size();
    _room -= text.size();
    _size += text.size();
  }
  void appendToSeveral(std::string_view text);
  void useBlock(char *block);

  std::deque<std::unique_ptr<char[]>> _blocks; // full ones, but for the last
  std::size_t _begin = 0;                      // in the first one
  char *_end = nullptr;                        // in the last one
  std::size_t _room = 0;                       // from there on
  std::size_t _size = 0;
};

} // namespace buttondriver
