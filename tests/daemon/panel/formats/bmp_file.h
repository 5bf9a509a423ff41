// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"

#include <cstdint>
#include <string>

namespace buttondriver::panel {

/// A BMP file in the making: fields to change, the rest as usual.
struct BmpFile {
  std::string signature = "BM";
  std::uint32_t pixel_offset = 54;
  std::uint32_t header_size = 40;
  std::int32_t width = 1;
  std::int32_t height = 1;
  std::uint16_t planes = 1;
  std::uint16_t bits_per_pixel = 24;
  std::uint32_t compression = 0;
  std::string pixels; ///< what follows the header

  std::string bytes() const {
    return signature + number(0x11223344, 4) + number(5, 2) + number(6, 2) + number(pixel_offset, 4) +
           number(header_size, 4) + number(static_cast<std::uint32_t>(width), 4) +
           number(static_cast<std::uint32_t>(height), 4) + number(planes, 2) + number(bits_per_pixel, 2) +
           number(compression, 4) + number(0, 4) + number(2835, 4) + number(2836, 4) + number(7, 4) + number(8, 4) +
           pixels;
  }

private:
  static std::string number(std::uint32_t value, unsigned size) {
    std::string text;
    for (unsigned i = 0; i < size; ++i)
      text += static_cast<char>(value >> 8 * i);
    return text;
  }
};

inline ByteView view(const std::string &bytes) { return {bytes.data(), bytes.size()}; }

} // namespace buttondriver::panel
