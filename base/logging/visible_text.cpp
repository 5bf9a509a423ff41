// SPDX-License-Identifier: Apache-2.0
#include "logging/visible_text.h"

#include <cstdint>
#include <cstring>

namespace buttondriver {

namespace {

bool is_control(unsigned char character) { return character < 0x20 || character == 0x7F; }

/// Whether one of eight characters is a control character, looked at all at once.
bool has_control(const char *eight) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t tops = 0x80 * ones;
  std::uint64_t characters = 0;
  std::memcpy(&characters, eight, sizeof characters);
  const std::uint64_t deletes = characters ^ 0x7F * ones; // 0 where there was 0x7F
  return (((characters - 0x20 * ones) & ~characters) | ((deletes - ones) & ~deletes)) & tops;
}

/// How many characters from `begin` on need no change.
std::size_t plain_length(std::string_view text, std::size_t begin) {
  std::size_t end = begin;
  while (text.size() - end >= sizeof(std::uint64_t) && !has_control(text.data() + end))
    end += sizeof(std::uint64_t);
  while (end < text.size() && !is_control(static_cast<unsigned char>(text[end])))
    ++end;
  return end - begin;
}

} // namespace

std::string visible_text(std::string_view text) {
  std::string visible;
  visible.reserve(text.size());
  append_visible(visible, text);
  return visible;
}

void append_visible(std::string &line, std::string_view text) {
  static constexpr char digits[] = "0123456789abcdef";
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t plain = plain_length(text, i);
    line += text.substr(i, plain);
    i += plain;
    if (i == text.size())
      break;
    const auto code = static_cast<unsigned char>(text[i++]);
    const char number[] = {'\\', 'x', digits[code >> 4], digits[code & 0xF]};
    line.append(number, sizeof number);
  }
}

} // namespace buttondriver
