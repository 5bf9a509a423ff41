// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace buttondriver::documents {

/// Bytes written as pairs of hexadecimal digits, parted by blanks: "00 0c ff".
class HexBytes {
public:
  static constexpr std::size_t most_bytes = 256;

  /// Without a sense when `text` holds anything else, or too much.
  explicit constexpr HexBytes(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); i += 3) {
      const bool parted = i + 2 == text.size() || (i + 3 < text.size() && text[i + 2] == ' ');
      const int high = digit(text[i]);
      const int low = i + 1 < text.size() ? digit(text[i + 1]) : -1;
      if (!parted || high < 0 || low < 0 || _size == most_bytes) {
        _makes_sense = false;
        return;
      }
      _bytes[_size++] = static_cast<std::uint8_t>(high << 4 | low);
    }
  }

  constexpr bool makesSense() const { return _makes_sense; }
  /// Borrows from this object.
  constexpr ByteView view() const { return ByteView(_bytes.data(), _size); }

private:
  /// -1 for anything that is no digit; capitals are none, so that all examples look alike.
  static constexpr int digit(char character) {
    if (character >= '0' && character <= '9')
      return character - '0';
    return character >= 'a' && character <= 'f' ? character - 'a' + 10 : -1;
  }

  std::array<std::uint8_t, most_bytes> _bytes{};
  std::size_t _size = 0;
  bool _makes_sense = true;
};

} // namespace buttondriver::documents
