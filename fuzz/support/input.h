// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace buttondriver::fuzz {

/// The bytes of one input, cut into what a target needs. Numbers are taken from the end and files from the front, so
/// that a real file with a few bytes after it is a sensible input. Nothing ever fails: what is no more there is zero,
/// or empty.
class Input {
public:
  Input(const std::uint8_t *data, std::size_t size) : _begin(data), _end(data + size) {}

  bool empty() const { return _begin == _end; }

  /// The last bytes as a number, most significant byte first.
  template <class Integer> Integer number() {
    using Bits = std::make_unsigned_t<Integer>;
    const std::size_t width = std::min(sizeof(Integer), left());
    std::uint64_t bits = 0;
    for (const std::uint8_t *byte = _end - width; byte != _end; ++byte)
      bits = bits << 8 | *byte;
    _end -= width;
    return static_cast<Integer>(static_cast<Bits>(bits));
  }

  /// At most `count` bytes from the front, in memory of exactly their size, so that a sanitizer sees the first read
  /// after them.
  std::vector<std::uint8_t> bytes(std::size_t count) {
    const std::uint8_t *begin = _begin;
    _begin += std::min(count, left());
    return {begin, _begin};
  }
  std::vector<std::uint8_t> rest() { return bytes(left()); }

private:
  std::size_t left() const { return static_cast<std::size_t>(_end - _begin); }

  const std::uint8_t *_begin;
  const std::uint8_t *_end;
};

} // namespace buttondriver::fuzz
