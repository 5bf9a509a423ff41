// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace buttondriver::panel {

inline constexpr std::uint32_t white = 0xFFFFFF;
inline constexpr std::uint32_t black = 0x000000;

/// A 0xRRGGBB colour as a 16-bit pixel: 5 bits red, 6 green, 5 blue.
constexpr std::uint16_t rgb888_to_rgb565(std::uint32_t c) {
  return static_cast<std::uint16_t>(((c >> 8) & 0xF800) + ((c >> 5) & 0x07E0) + ((c & 0xFF) >> 3));
}

/// The three bytes of a BMP pixel as a 16-bit pixel.
constexpr std::uint16_t bgr_to_rgb565(std::uint8_t blue, std::uint8_t green, std::uint8_t red) {
  return static_cast<std::uint16_t>(((red << 8) & 0xF800) + ((green << 3) & 0x07E0) + (blue >> 3));
}

} // namespace buttondriver::panel
