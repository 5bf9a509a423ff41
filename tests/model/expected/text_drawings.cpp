// SPDX-License-Identifier: Apache-2.0
#include "model/expected/drawings.h"

namespace buttondriver::test {

namespace {

constexpr std::int64_t most_pixels = 1 << 26;

std::uint16_t screen_colour(std::uint32_t colour) {
  const std::uint32_t red = colour >> 16 & 0xFF;
  const std::uint32_t green = colour >> 8 & 0xFF;
  const std::uint32_t blue = colour & 0xFF;
  return static_cast<std::uint16_t>(red / 8 * 2048 + green / 4 * 32 + blue / 8);
}

/// A row of the glass for each row of a line; what leaves it is lost.
class Paper {
public:
  Paper(int height, std::uint16_t colour)
      : _rows(static_cast<std::size_t>(height), std::vector<std::uint16_t>(glass_size, colour)), _colour(colour) {}

  void stamp(const BdfGlyph &glyph, std::int64_t x, std::uint16_t text, std::uint16_t back) {
    for (std::size_t row = 0; row < glyph.rows.size() && row < _rows.size(); ++row) {
      for (std::size_t column = 0; column < glyph.rows[row].size(); ++column) {
        const auto place = static_cast<std::size_t>(x) + column;
        if (place < glass_size)
          _rows[row][place] = glyph.rows[row][column] ? text : back;
      }
    }
  }

  /// The first `count` pixels of rows of `width`, which may be wider than the glass.
  std::vector<std::uint16_t> cut(std::int64_t width, std::size_t count) const {
    std::vector<std::uint16_t> pixels;
    pixels.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t column = i % static_cast<std::size_t>(width);
      pixels.push_back(column < glass_size ? _rows[i / static_cast<std::size_t>(width)][column] : _colour);
    }
    return pixels;
  }

private:
  std::vector<std::vector<std::uint16_t>> _rows;
  std::uint16_t _colour;
};

/// Rows of a font are usable when they are stored in exactly four bytes.
bool is_drawable(const BdfGlyph &glyph) { return glyph.width >= 1 && glyph.width <= 32; }

/// The pixels of `characters` characters in a block of `width` columns; nothing when one of them cannot be drawn.
std::optional<std::vector<std::uint16_t>> set_text(const BdfFont &font, int height, std::int64_t width,
                                                   std::int64_t characters, const std::string &text,
                                                   const TextColours &colours) {
  if (width < 0 || width * height > most_pixels)
    return std::nullopt;
  const std::uint16_t text_pixel = screen_colour(colours.text);
  const std::uint16_t back_pixel = screen_colour(colours.back);
  // Outside of the glyphs' own boxes the paper repeats the low byte of its colour.
  Paper paper(height, static_cast<std::uint16_t>((back_pixel & 0xFF) * 0x0101));
  std::int64_t x = 0;
  for (std::int64_t i = 0; i < characters; ++i) {
    const bool is_blank = i >= static_cast<std::int64_t>(text.size());
    const char character = is_blank ? ' ' : text[static_cast<std::size_t>(i)];
    const BdfGlyph *glyph = font.glyph(static_cast<unsigned char>(character));
    if (!glyph)
      return std::nullopt;
    if (x + glyph->width > width)
      break;
    if (!is_drawable(*glyph))
      return std::nullopt;
    if (x >= glass_size)
      break;
    paper.stamp(*glyph, x, text_pixel, back_pixel);
    x += glyph->advance;
  }
  return paper.cut(width, static_cast<std::size_t>(width * height) & 0xFFFFU);
}

/// One row more than the line has, as the daemon has always set the window.
Span rows_of_line(std::int64_t line_id, int height) { return {line_id * height + 1, (line_id + 1) * height + 1}; }

} // namespace

std::optional<Drawing> whole_line(const BdfFont *font, std::int32_t line_id, const std::string &text,
                                  const TextColours &colours) {
  const BdfGlyph *cell = font ? font->glyph('A') : nullptr;
  if (!cell)
    return std::nullopt;
  auto pixels = set_text(*font, cell->height, glass_size, static_cast<std::int64_t>(text.size()), text, colours);
  if (!pixels)
    return std::nullopt;
  return Drawing{all_columns, rows_of_line(line_id, cell->height), *std::move(pixels)};
}

std::optional<Drawing> part_of_line(const BdfFont *font, std::int32_t line_id, std::int32_t offset,
                                    std::int32_t characters, const std::string &text, const TextColours &colours) {
  const BdfGlyph *cell = font ? font->glyph('A') : nullptr;
  if (!cell)
    return std::nullopt;
  const std::int64_t width = cell->width;
  auto pixels = set_text(*font, cell->height, width * characters, characters, text, colours);
  if (!pixels)
    return std::nullopt;
  const Span columns = {offset * width + 4, (std::int64_t{offset} + characters) * width + 3};
  return Drawing{columns, rows_of_line(line_id, cell->height), *std::move(pixels)};
}

Drawing blackness() {
  return {all_columns, all_rows, std::vector<std::uint16_t>(std::size_t{glass_size} * glass_size, 0)};
}

} // namespace buttondriver::test
