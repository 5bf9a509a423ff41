// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace buttondriver::test {

/// Bytes of a message as the model reads them: those that are missing are zero.
inline std::uint8_t byte_at(const std::string &bytes, std::uint64_t place) {
  return place < bytes.size() ? static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(place)]) : std::uint8_t{0};
}

/// 32 bits, the most significant byte first.
inline std::uint32_t network_word(const std::string &bytes, std::uint64_t place) {
  std::uint32_t word = 0;
  for (std::uint64_t i = 0; i < 4; ++i)
    word = word * 256 + byte_at(bytes, place + i);
  return word;
}

inline std::int32_t signed_network_word(const std::string &bytes, std::uint64_t place) {
  return static_cast<std::int32_t>(network_word(bytes, place));
}

/// `count` bytes as a number, the least significant byte first.
inline std::uint32_t file_number(const std::string &bytes, std::uint64_t place, std::uint64_t count) {
  std::uint32_t number = 0;
  for (std::uint64_t i = count; i-- > 0;)
    number = number * 256 + byte_at(bytes, place + i);
  return number;
}

/// Appends 32 bits, the most significant byte first.
inline void append_network_word(std::string &bytes, std::uint32_t word) {
  for (const unsigned shift : {24U, 16U, 8U, 0U})
    bytes += static_cast<char>(word >> shift & 0xFFU);
}

} // namespace buttondriver::test
