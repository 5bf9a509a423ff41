// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace buttondriver {

/// Bytes that somebody else owns, read with bounds: every byte past the end reads as zero, whatever the offset.
/// For data that came from outside and may be shorter than it claims.
class ByteView {
public:
  constexpr ByteView() = default;
  /// Borrows `size` bytes at `data`; `data` may be null, then there are no bytes.
  constexpr ByteView(const std::uint8_t *data, std::size_t size) : _data(data), _size(data ? size : 0) {}
  /// The same for text.
  ByteView(const char *data, std::size_t size) : ByteView(reinterpret_cast<const std::uint8_t *>(data), size) {}

  /// The first of them; may be null when there are none.
  constexpr const std::uint8_t *data() const { return _data; }
  /// How many bytes there are.
  constexpr std::size_t size() const { return _size; }
  /// Whether there are none.
  constexpr bool empty() const { return _size == 0; }

  /// One byte.
  constexpr std::uint8_t u8(std::uint64_t offset) const { return offset < _size ? _data[offset] : std::uint8_t{0}; }

  /// 32 bits, most significant byte first.
  constexpr std::uint32_t bigEndian32(std::uint64_t offset) const {
    if (offset < _size && _size - offset >= 4) {
      const std::uint8_t *const bytes = _data + offset;
      return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
    }
    return std::uint32_t{u8(offset)} << 24 | std::uint32_t{u8(offset + 1)} << 16 | std::uint32_t{u8(offset + 2)} << 8 |
           std::uint32_t{u8(offset + 3)};
  }

  /// 16 bits, least significant byte first.
  constexpr std::uint16_t littleEndian16(std::uint64_t offset) const {
    return static_cast<std::uint16_t>(u8(offset) | u8(offset + 1) << 8);
  }

  /// 32 bits, least significant byte first.
  constexpr std::uint32_t littleEndian32(std::uint64_t offset) const {
    return std::uint32_t{u8(offset)} | std::uint32_t{u8(offset + 1)} << 8 | std::uint32_t{u8(offset + 2)} << 16 |
           std::uint32_t{u8(offset + 3)} << 24;
  }

  /// What lies from `offset` on; nothing when that is past the end.
  constexpr ByteView from(std::size_t offset) const {
    return offset < _size ? ByteView(_data + offset, _size - offset) : ByteView();
  }

  /// Copies the first `count` bytes to `destination`, zeros standing for those past the end.
  void copyTo(void *destination, std::size_t count) const {
    const std::size_t available = std::min(count, _size);
    if (available > 0)
      std::memcpy(destination, _data, available);
    if (count > available)
      std::memset(static_cast<char *>(destination) + available, 0, count - available);
  }

  /// The characters from `offset` on: up to the first NUL, at most `count`, never past the end.
  std::string_view text(std::size_t offset, std::uint32_t count) const {
    const ByteView rest = from(offset);
    const std::size_t limit = std::min<std::size_t>(rest._size, count);
    const char *begin = reinterpret_cast<const char *>(rest._data);
    const void *end = limit > 0 ? std::memchr(begin, 0, limit) : nullptr;
    return {begin, end ? static_cast<std::size_t>(static_cast<const char *>(end) - begin) : limit};
  }

private:
  const std::uint8_t *_data = nullptr;
  std::size_t _size = 0;
};

} // namespace buttondriver
