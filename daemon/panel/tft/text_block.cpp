// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/text_block.h"

#include "panel/tft/tft.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace buttondriver::panel {

namespace {

constexpr int glyph_pitch = TextGlyph::drawable_pitch;
constexpr unsigned most_columns = 8 * glyph_pitch;

constexpr std::size_t transfer_words = 0x10000;
/// A little more than can be sent, and room behind it: a glyph is drawn eight pixels at a time, of which those that it
/// does not have stay as they are.
alignas(16) std::array<std::uint16_t, transfer_words + 8> block_pixels;

/// Two pixels a number. The compiler makes one operation of what is done with all four, where the processor has one.
using EightPixels [[gnu::vector_size(16)]] = std::uint32_t;

/// For each byte, all ones at the pixels of the bits that are 1.
struct Masks {
  alignas(16) std::uint16_t of_byte[256][8] = {};

  constexpr Masks() {
    for (unsigned byte = 0; byte < 256; ++byte)
      for (unsigned i = 0; i < 8; ++i)
        of_byte[byte][i] = (byte & (0x80U >> i)) != 0 ? 0xFFFF : 0;
  }
};
constexpr Masks masks;

EightPixels load(const std::uint16_t *pixels) {
  EightPixels eight;
  std::memcpy(&eight, pixels, sizeof eight);
  return eight;
}

void store(std::uint16_t *pixels, EightPixels eight) { std::memcpy(pixels, &eight, sizeof eight); }

EightPixels same(std::uint16_t pixel) { return EightPixels{} + pixel * 0x00010001U; }

/// Chooses of each pair of pixels the first one where the mask has ones.
EightPixels choose(EightPixels mask, EightPixels first, EightPixels second) {
  return second ^ (mask & (first ^ second));
}

/// What one byte of each row is drawn to.
struct Strip {
  const unsigned char *bits;
  std::uint16_t *place;
  std::ptrdiff_t stride;
  std::ptrdiff_t rows;
};

void draw_whole(Strip strip, EightPixels text, EightPixels back) {
#pragma GCC unroll 4
  for (; strip.rows > 0; --strip.rows, strip.bits += glyph_pitch, strip.place += strip.stride)
    store(strip.place, choose(load(masks.of_byte[*strip.bits]), text, back));
}

/// Draws one to seven `columns`.
void draw_part(Strip strip, unsigned columns, EightPixels text, EightPixels back) {
  const EightPixels drawn = load(masks.of_byte[0xFF00U >> columns & 0xFF]);
  for (; strip.rows > 0; --strip.rows, strip.bits += glyph_pitch, strip.place += strip.stride) {
    const EightPixels eight = choose(load(masks.of_byte[*strip.bits]), text, back);
    store(strip.place, choose(drawn, eight, load(strip.place)));
  }
}

} // namespace

bool TextBlock::fill(std::uint16_t background) {
  if (_width < 0 || (_height > 0 && _width > most_pixels / _height))
    return false;
  // A transfer's count is the low 16 bits of the number of pixels; those after that many are never sent.
  _sent_count = static_cast<std::uint32_t>(_width * _height) & 0xFFFF;
  _safe_width = _width * _height == _sent_count ? _drawable_width : 0;
  // Whole pieces, of a size that the compiler knows, go in wide registers. The last one ends within the place.
  std::array<std::uint16_t, 64> piece;
  static_assert(transfer_words % piece.size() == 0);
  piece.fill(background);
  for (std::size_t i = 0; i < _sent_count; i += piece.size())
    std::memcpy(block_pixels.data() + i, piece.data(), sizeof piece);
  return true;
}

void TextBlock::draw(const TextGlyph &glyph, std::int64_t x, std::int64_t y) {
  const unsigned columns = std::min(glyph.width, most_columns);
  if (x < 0 || y < 0 || x + columns > _safe_width || y >= _drawable_height) {
    drawPixelwise(glyph, x, y);
    return;
  }
  Strip strip{glyph.bits, block_pixels.data() + (y * _width + x), static_cast<std::ptrdiff_t>(_width),
              static_cast<std::ptrdiff_t>(std::min<std::int64_t>(glyph.rows, _drawable_height - y))};
  unsigned left = columns;
  for (; left >= 8; left -= 8, ++strip.bits, strip.place += 8)
    draw_whole(strip, same(_text_pixel), same(_back_pixel));
  if (left > 0)
    draw_part(strip, left, same(_text_pixel), same(_back_pixel));
}

void TextBlock::drawPixelwise(const TextGlyph &glyph, std::int64_t x, std::int64_t y) {
  const std::int64_t rows = std::min<std::int64_t>(glyph.rows, _drawable_height - y);
  const unsigned columns = std::min(glyph.width, most_columns);
  for (std::int64_t row = std::max<std::int64_t>(0, -y); row < rows; ++row) {
    const unsigned char *const bits = glyph.bits + row * glyph_pitch;
    for (unsigned column = 0; column < columns; ++column) {
      const std::int64_t place = x + column;
      const std::int64_t index = (y + row) * _width + place;
      if (place >= 0 && place < _drawable_width && index < _sent_count)
        block_pixels[static_cast<std::size_t>(index)] =
            (bits[column / 8] & (0x80U >> column % 8)) != 0 ? _text_pixel : _back_pixel;
    }
  }
}

void TextBlock::send(unsigned mask) { tft_write_pixels(mask, block_pixels.data(), _sent_count); }

} // namespace buttondriver::panel
