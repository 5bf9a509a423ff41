// SPDX-License-Identifier: Apache-2.0
#include "simulator/reading/screen_font.h"

#include "panel/formats/font.h"

#include <algorithm>
#include <utility>

namespace buttondriver::simulator {

namespace {

/// The part of a glyph that lies in its cell: what is wider is drawn over by the next character, and a line has no
/// pixels below.
CellGlyph in_cell(const panel::TextGlyph &glyph, int cell_width, int cell_height) {
  CellGlyph cell;
  cell.width = std::min(static_cast<int>(glyph.width), cell_width);
  const std::size_t row_count = std::min<std::size_t>(glyph.rows, static_cast<std::size_t>(cell_height));
  for (std::size_t row = 0; row < row_count; ++row) {
    std::uint32_t bits = 0;
    for (std::size_t byte = 0; byte < panel::TextGlyph::drawable_pitch; ++byte)
      bits = bits << 8 | glyph.bits[row * panel::TextGlyph::drawable_pitch + byte];
    cell.rows.push_back(bits);
  }
  return cell;
}

} // namespace

ScreenFont ScreenFont::missing(std::string fault) {
  ScreenFont font;
  font._fault = std::move(fault);
  return font;
}

ScreenFont ScreenFont::inUse() {
  // The size first: what text_glyph returns holds until the next call.
  int cell_width = 0;
  int cell_height = 0;
  if (panel::glyph_cell_size(&cell_width, &cell_height) != 0)
    return missing("no font is loaded");
  if (cell_width == 0 || cell_height == 0 || !panel::text_glyph('A')->is_drawable)
    return missing("the font is none that texts can be drawn with");
  ScreenFont font;
  font._cell_width = cell_width;
  font._cell_height = cell_height;
  // A text ends at its NUL. Fonts have the sign there that stands for characters which they do not have.
  for (std::size_t character = 1; character < characters; ++character) {
    const auto code = static_cast<unsigned char>(character);
    if (!panel::font_has_character(code))
      continue;
    const panel::TextGlyph *const glyph = panel::text_glyph(code);
    if (glyph && glyph->is_drawable)
      font._glyphs[character] = in_cell(*glyph, cell_width, cell_height);
  }
  return font;
}

} // namespace buttondriver::simulator
