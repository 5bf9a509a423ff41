// SPDX-License-Identifier: Apache-2.0
#include "simulator/picture/screen_image.h"

#include <algorithm>

namespace buttondriver::simulator {

namespace {

constexpr unsigned intensity_offset = 21;
constexpr unsigned intensity_divisor = dimensions::highest_intensity_level + intensity_offset;

constexpr unsigned widened_5_bits(unsigned value) { return value << 3 | value >> 2; }
constexpr unsigned widened_6_bits(unsigned value) { return value << 2 | value >> 4; }

class Backlight {
public:
  explicit Backlight(int intensity)
      : _factor(static_cast<unsigned>(std::min(intensity, dimensions::highest_intensity_level)) + intensity_offset) {}

  QRgb shown(std::uint16_t pixel) const {
    return 0xFF000000U | dimmed(widened_5_bits(pixel >> 11U)) << 16 | dimmed(widened_6_bits(pixel >> 5U & 0x3FU)) << 8 |
           dimmed(widened_5_bits(pixel & 0x1FU));
  }

private:
  unsigned dimmed(unsigned channel) const { return (channel * _factor + intensity_divisor / 2) / intensity_divisor; }

  unsigned _factor;
};

} // namespace

QImage screen_image(const ScreenPixels &pixels, int intensity) {
  const Backlight backlight(intensity);
  QImage image(dimensions::screen_width, dimensions::screen_height, QImage::Format_RGB32);
  image.setDotsPerMeterX(dots_per_metre);
  image.setDotsPerMeterY(dots_per_metre);
  const std::uint16_t *source = pixels.data();
  for (int y = 0; y < image.height(); ++y) {
    auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x)
      *line++ = backlight.shown(*source++);
  }
  return image;
}

} // namespace buttondriver::simulator
