// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dimensions/panel_dimensions.h"
#include "panel/formats/glyph_cache.h"

#include <algorithm>
#include <cstdint>

namespace buttondriver::panel {

/// The pixels of a text before they are sent. It behaves as if it were `width` x `height` pixels, of which the part
/// that fits the screen can be drawn on; only what a transfer can carry takes memory. All blocks have their pixels in
/// one place of 128 KiB, of which a line touches what it sends: there is one block at a time.
class TextBlock {
public:
  /// Larger blocks cannot be filled.
  static constexpr std::int64_t most_pixels = std::int64_t{1} << 26;

  /// `height` is not negative.
  /// `text_pixel` and `back_pixel` are what bits of glyphs become.
  TextBlock(std::int64_t width, std::int64_t height, std::uint16_t text_pixel, std::uint16_t back_pixel)
      : _width(width), _height(height), _drawable_width(std::min<std::int64_t>(width, dimensions::screen_width)),
        _drawable_height(std::min<std::int64_t>(height, dimensions::screen_height)), _text_pixel(text_pixel),
        _back_pixel(back_pixel) {}

  /// Begins with `background` everywhere. False when the block is too large, or its width negative; it is then of no
  /// use.
  bool fill(std::uint16_t background);

  std::int64_t width() const { return _width; }

  /// Draws a glyph that is drawable with its top left corner at `x`, `y`, which may lie anywhere; what is outside is
  /// left out.
  void draw(const TextGlyph &glyph, std::int64_t x, std::int64_t y);

  void send(unsigned mask);

private:
  void drawPixelwise(const TextGlyph &glyph, std::int64_t x, std::int64_t y);

  std::int64_t _width;
  std::int64_t _height;
  std::int64_t _drawable_width;
  std::int64_t _drawable_height;
  std::uint16_t _text_pixel;
  std::uint16_t _back_pixel;
  std::uint32_t _sent_count = 0;
  /// The columns that glyphs may cover without a look at each pixel; none where not all of the block is sent.
  std::int64_t _safe_width = 0;
};

} // namespace buttondriver::panel
