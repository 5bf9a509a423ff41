// SPDX-License-Identifier: Apache-2.0
#include "logging/visible_text.h"

namespace buttondriver {

namespace {

bool is_control(unsigned char character) { return character < 0x20 || character == 0x7F; }

} // namespace

std::string visible_text(std::string_view text) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string visible;
  visible.reserve(text.size());
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (!is_control(code)) {
      visible += character;
      continue;
    }
    visible += "\\x";
    visible += digits[code >> 4];
    visible += digits[code & 0xF];
  }
  return visible;
}

} // namespace buttondriver
