// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace buttondriver::simulator {

/// What a character looks like in its cell. Rows are from the top, the leftmost pixel in the highest bit.
struct CellGlyph {
  int width = 0;                   ///< 0 to the cell's; pixels of the cell to the right of it are not the glyph's
  std::vector<std::uint32_t> rows; ///< as many as the cell has, or fewer: those below are not the glyph's
};

/// A copy of the font that texts are drawn with, as far as it is needed to read them from a screen's pixels.
class ScreenFont {
public:
  static constexpr std::size_t characters = 256;

  /// The font that the panel's text functions use now. Under the lock that guards them.
  static ScreenFont inUse();
  /// No font, and why texts cannot be read.
  static ScreenFont missing(std::string fault);

  /// Why texts cannot be read, as a sentence without its full stop; empty when they can.
  const std::string &fault() const { return _fault; }
  /// The size of the character cells in pixels, 1 or more; 0 where texts cannot be read.
  int cellWidth() const { return _cell_width; }
  int cellHeight() const { return _cell_height; }
  /// Nothing for a character that the font has not, or cannot draw.
  const std::optional<CellGlyph> &glyph(unsigned char character) const { return _glyphs[character]; }

private:
  ScreenFont() = default;

  std::string _fault;
  int _cell_width = 0;
  int _cell_height = 0;
  std::array<std::optional<CellGlyph>, characters> _glyphs;
};

} // namespace buttondriver::simulator
