// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/payloads/shown.h"

namespace buttondriver::bridge {

QString shown(std::string_view bytes) {
  constexpr int most_characters = 60;
  constexpr char digits[] = "0123456789abcdef";
  QString text;
  for (const char byte : bytes) {
    if (text.size() >= most_characters)
      return text + QLatin1String("...");
    const auto number = static_cast<unsigned char>(byte);
    if (number >= 0x20 && number < 0x7F)
      text += QLatin1Char(byte);
    else
      text += QLatin1String("\\x") + QLatin1Char(digits[number >> 4]) + QLatin1Char(digits[number & 0xF]);
  }
  return text;
}

} // namespace buttondriver::bridge
