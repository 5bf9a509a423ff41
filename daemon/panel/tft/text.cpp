// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/text.h"

#include "dimensions/panel_dimensions.h"
#include "logging/standard_output.h"
#include "panel/formats/colour.h"
#include "panel/formats/font.h"
#include "panel/registers/registers.h"
#include "panel/tft/pixel_window.h"
#include "panel/tft/tft.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>

namespace buttondriver::panel {

namespace {

/// Every glyph row of a usable font is stored in this many bytes.
constexpr int glyph_pitch = 4;

/// The pixels of a text before they are sent. It behaves as if it were `width` x `height` pixels, of which the part
/// that fits the screen can be drawn on; only what a transfer can carry takes memory.
class TextBlock {
public:
  /// Larger blocks count as an allocation that failed.
  static constexpr std::int64_t most_pixels = std::int64_t{1} << 26;

  /// `height` is not negative.
  TextBlock(std::int64_t width, std::int64_t height) : _width(width), _height(height) {}

  bool allocate(std::uint16_t background) {
    if (_width < 0 || (_height > 0 && _width > most_pixels / _height))
      return false;
    // A transfer's count is the low 16 bits of the number of pixels; those after that many are never sent.
    _sent_count = static_cast<std::uint32_t>(_width * _height) & 0xFFFF;
    _pixels.reset(new (std::nothrow) std::uint16_t[std::max<std::uint32_t>(_sent_count, 1)]);
    if (!_pixels)
      return false;
    std::fill_n(_pixels.get(), _sent_count, background);
    return true;
  }

  std::int64_t width() const { return _width; }
  std::int64_t drawableWidth() const { return std::min<std::int64_t>(_width, dimensions::screen_width); }
  std::int64_t drawableHeight() const { return std::min<std::int64_t>(_height, dimensions::screen_height); }

  /// `row` is less than drawableHeight().
  void set(std::int64_t row, std::int64_t column, std::uint16_t pixel) {
    if (row < 0 || column < 0 || column >= drawableWidth())
      return;
    const std::int64_t index = row * _width + column;
    if (index < _sent_count)
      _pixels[static_cast<std::size_t>(index)] = pixel;
  }

  void send(unsigned mask) { tft_write_pixels(mask, _pixels.get(), _sent_count); }

private:
  std::int64_t _width;
  std::int64_t _height;
  std::uint32_t _sent_count = 0;
  std::unique_ptr<std::uint16_t[]> _pixels;
};

/// A character is one pixel wide at least, or stands where others stood: in a font whose pen does not move, this keeps
/// a text of millions of characters from taking seconds.
constexpr int most_drawn_characters = 4096;

void draw_glyph(TextBlock &block, const FT_Bitmap &bitmap, std::int64_t pen_x, std::int64_t pen_y,
                std::uint16_t text_pixel, std::uint16_t back_pixel) {
  const auto rows = std::min<std::int64_t>(bitmap.rows, block.drawableHeight() - pen_y);
  const unsigned columns = std::min(bitmap.width, unsigned{8 * glyph_pitch});
  for (std::int64_t row = 0; row < rows; ++row) {
    const unsigned char *bytes = bitmap.buffer + row * glyph_pitch;
    for (unsigned column = 0; column < columns; ++column) {
      const bool is_set = (bytes[column / 8] & (0x80U >> column % 8)) != 0;
      block.set(pen_y + row, pen_x + column, is_set ? text_pixel : back_pixel);
    }
  }
}

struct Pen {
  std::int64_t x = 0;
  std::int64_t y = 0;

  void advance(const RenderedGlyph &glyph, std::int64_t times) {
    x += times * glyph.advance_x;
    y += times * glyph.advance_y;
  }
};

/// How many of `left` further copies of a glyph that was just drawn change no pixel, the first one standing at `pen`.
std::int64_t unseen_copies(const RenderedGlyph &glyph, const Pen &pen, std::int64_t left) {
  if (glyph.advance_x == 0 && glyph.advance_y == 0)
    return left;
  const std::int64_t end = pen.x + glyph.bitmap().width;
  if (end > 0)
    return 0;
  return glyph.advance_x <= 0 ? left : std::min(left, -end / glyph.advance_x + 1);
}

/// False when there is no glyph, or none of a form that can be drawn.
bool draw_characters(TextBlock &block, std::string_view text, int count, std::uint16_t text_pixel,
                     std::uint16_t back_pixel) {
  const auto text_size = static_cast<std::int64_t>(text.size());
  Pen pen;
  RenderedGlyph glyph;
  int drawn = 0;
  for (std::int64_t i = 0; i < count && drawn < most_drawn_characters; ++i, ++drawn) {
    // The characters past the end are one blank, over and over.
    if (i <= text_size)
      glyph = render_glyph(i < text_size ? static_cast<unsigned char>(text[static_cast<std::size_t>(i)]) : ' ');
    if (!glyph)
      return false;
    const FT_Bitmap &bitmap = glyph.bitmap();
    if (pen.x + bitmap.width > block.width())
      break;
    // A glyph without width has no bytes in a row: it fails the line also where the pen stands at its end.
    if (bitmap.pitch != glyph_pitch)
      return false;
    // Nothing can be drawn beyond the screen's own width, however long the text claims to be.
    if (pen.x >= dimensions::screen_width)
      break;
    draw_glyph(block, bitmap, pen.x, pen.y, text_pixel, back_pixel);
    pen.advance(glyph, 1);
    if (i < text_size)
      continue;
    // In a font whose pen stands still or goes back, this can be two thousand million characters.
    const std::int64_t unseen = unseen_copies(glyph, pen, count - 1 - i);
    pen.advance(glyph, unseen);
    i += unseen;
  }
  return true;
}

/// What tft_text_line and tft_sub_text_line have in common.
struct Line {
  int screen_id;
  int line_id;
  std::string_view text;
  int count; ///< characters to draw
  std::uint32_t text_colour;
  std::uint32_t back_colour;
  /// The character cell where the text begins. Without it the line is a whole one: its window keeps the full width,
  /// which every drawing restores at its end.
  std::optional<int> offset;
};

int draw_line(const Line &line) {
  const std::optional<unsigned> mask = tft_checked_mask(line.screen_id);
  if (!mask)
    return -1;
  int cell_width = 0;
  int cell_height = 0;
  glyph_cell_size(&cell_width, &cell_height);
  if (line.offset) {
    const std::int64_t first = std::int64_t{*line.offset} * cell_width;
    const std::int64_t end = (std::int64_t{*line.offset} + line.count) * cell_width;
    tft_write_register(*mask, tft_register::horizontal_window, window_columns(first, end - 1));
  }
  // The window ends one row below the line's last pixel row; the block has no pixels for that row.
  const std::int64_t top = std::int64_t{line.line_id} * cell_height;
  tft_write_register(*mask, tft_register::vertical_window, window_rows(top, top + cell_height));
  tft_start_pixels(*mask);
  const int result = tft_render_text(*mask, line.text, line.count, rgb888_to_rgb565(line.text_colour),
                                     rgb888_to_rgb565(line.back_colour), !line.offset);
  if (result != 0)
    print_line("Error generating line bitmap using FreeType.");
  tft_reset_window();
  return result;
}

} // namespace

int tft_text_line(int screen_id, int line_id, std::string_view text, std::uint32_t text_colour,
                  std::uint32_t back_colour) {
  return draw_line({screen_id, line_id, text, static_cast<int>(text.size()), text_colour, back_colour, std::nullopt});
}

int tft_text_line_default(int screen_id, int line_id, std::string_view text) {
  const int result = tft_text_line(screen_id, line_id, text, black, white);
  // A line for no screen at all writes nothing.
  if (tft_select_mask(screen_id))
    tft_reset_window();
  return result;
}

int tft_sub_text_line(int screen_id, int line_id, int offset, std::string_view text, int num_chars,
                      std::uint32_t text_colour, std::uint32_t back_colour) {
  return draw_line({screen_id, line_id, text, num_chars, text_colour, back_colour, offset});
}

int tft_render_text(unsigned mask, std::string_view text, int count, std::uint16_t text_pixel, std::uint16_t back_pixel,
                    bool whole_line) {
  if (!text.data())
    return -1;
  if (!freetype_ready()) {
    tft_write_pixels(mask, nullptr, 0);
    return 0;
  }
  int cell_width = 0;
  int cell_height = 0;
  if (glyph_cell_size(&cell_width, &cell_height) != 0)
    return -1;
  TextBlock block(whole_line ? dimensions::screen_width : std::int64_t{cell_width} * count, cell_height);
  if (!block.allocate(static_cast<std::uint16_t>((back_pixel & 0xFF) * 0x0101)))
    return -1;

  if (!draw_characters(block, text, count, text_pixel, back_pixel))
    return -1;
  block.send(mask);
  return 0;
}

} // namespace buttondriver::panel
