// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace buttondriver::test {

/// Bytes from hexadecimal digits; blanks are for the reader.
inline std::string from_hex(std::string_view text) {
  std::string digits;
  for (const char c : text)
    if (c != ' ')
      digits += c;
  if (digits.size() % 2 != 0)
    throw std::invalid_argument("odd number of hexadecimal digits");
  std::string bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2)
    bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  return bytes;
}

/// Lower-case hexadecimal digits of `bytes`, without blanks.
inline std::string to_hex(std::string_view bytes) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    text += digits[static_cast<unsigned char>(c) >> 4];
    text += digits[static_cast<unsigned char>(c) & 0xF];
  }
  return text;
}

} // namespace buttondriver::test
