// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/text.h"

#include "dimensions/panel_dimensions.h"
#include "logging/standard_output.h"
#include "panel/formats/colour.h"
#include "panel/formats/font.h"
#include "panel/registers/registers.h"
#include "panel/tft/pixel_window.h"
#include "panel/tft/text_block.h"
#include "panel/tft/tft.h"

#include <algorithm>
#include <optional>

namespace buttondriver::panel {

namespace {

/// A character is one pixel wide at least, or stands where others stood: in a font whose pen does not move, this keeps
/// a text of millions of characters from taking seconds.
constexpr int most_drawn_characters = 4096;

struct Pen {
  std::int64_t x = 0;
  std::int64_t y = 0;

  void advance(const TextGlyph &glyph, std::int64_t times) {
    x += times * glyph.advance_x;
    y += times * glyph.advance_y;
  }
};

/// How many of `left` further copies of a glyph that was just drawn change no pixel, the first one standing at `pen`.
std::int64_t unseen_copies(const TextGlyph &glyph, const Pen &pen, std::int64_t left) {
  if (glyph.advance_x == 0 && glyph.advance_y == 0)
    return left;
  const std::int64_t end = pen.x + glyph.width;
  if (end > 0)
    return 0;
  return glyph.advance_x <= 0 ? left : std::min(left, -end / glyph.advance_x + 1);
}

/// False when there is no glyph, or none of a form that can be drawn.
bool draw_characters(TextBlock &block, std::string_view text, int count) {
  const auto text_size = static_cast<std::int64_t>(text.size());
  Pen pen;
  const TextGlyph *glyph = nullptr;
  int drawn = 0;
  for (std::int64_t i = 0; i < count && drawn < most_drawn_characters; ++i, ++drawn) {
    // The characters past the end are one blank, over and over.
    if (i <= text_size)
      glyph = text_glyph(i < text_size ? static_cast<unsigned char>(text[static_cast<std::size_t>(i)]) : ' ');
    if (!glyph)
      return false;
    if (pen.x + glyph->width > block.width())
      break;
    // A glyph without width has no bytes in a row: it fails the line also where the pen stands at its end.
    if (!glyph->is_drawable)
      return false;
    // Nothing can be drawn beyond the screen's own width, however long the text claims to be.
    if (pen.x >= dimensions::screen_width)
      break;
    block.draw(*glyph, pen.x, pen.y);
    pen.advance(*glyph, 1);
    if (i < text_size)
      continue;
    // In a font whose pen stands still or goes back, this can be two thousand million characters.
    const std::int64_t unseen = unseen_copies(*glyph, pen, count - 1 - i);
    pen.advance(*glyph, unseen);
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
  TextBlock block(whole_line ? dimensions::screen_width : std::int64_t{cell_width} * count, cell_height, text_pixel,
                  back_pixel);
  if (!block.fill(static_cast<std::uint16_t>((back_pixel & 0xFF) * 0x0101)))
    return -1;
  if (!draw_characters(block, text, count))
    return -1;
  block.send(mask);
  return 0;
}

} // namespace buttondriver::panel
