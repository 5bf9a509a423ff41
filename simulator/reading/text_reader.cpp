// SPDX-License-Identifier: Apache-2.0
#include "simulator/reading/text_reader.h"

#include <optional>
#include <utility>

namespace buttondriver::simulator {

namespace {

constexpr char16_t blank = u' ';

/// The pixels of one character cell.
class Cell {
public:
  Cell(const ScreenPixels &pixels, int left, int top, int width, int height)
      : _first(pixels.data() + top * dimensions::screen_width + left), _width(width), _height(height) {}

  int width() const { return _width; }
  int height() const { return _height; }
  std::uint16_t at(int column, int row) const { return _first[row * dimensions::screen_width + column]; }

  bool hasOneColour() const {
    for (int row = 0; row < _height; ++row)
      for (int column = 0; column < _width; ++column)
        if (at(column, row) != at(0, 0))
          return false;
    return true;
  }

private:
  const std::uint16_t *_first;
  int _width;
  int _height;
};

/// What a pixel of a cell is when a glyph is drawn in it.
enum class Ink {
  text,
  back,
  border, ///< outside of a glyph that is smaller than its cell
};

Ink ink_of(const CellGlyph &glyph, int column, int row) {
  if (column >= glyph.width || row >= static_cast<int>(glyph.rows.size()))
    return Ink::border;
  return (glyph.rows[static_cast<std::size_t>(row)] << column & 0x80000000U) != 0 ? Ink::text : Ink::back;
}

/// What a line of text is filled with around its glyphs.
std::uint16_t border_of(std::uint16_t back_pixel) { return static_cast<std::uint16_t>((back_pixel & 0xFF) * 0x0101); }

/// Takes the pixels of one ink, which all have to be the same.
bool take(std::optional<std::uint16_t> &colour, std::uint16_t pixel) {
  if (!colour)
    colour = pixel;
  return *colour == pixel;
}

/// Whether the pixels can be those of a cell with this glyph in it. A glyph without any background in its cell shows no
/// character: that could be anything of one colour.
bool shows(const Cell &cell, const CellGlyph &glyph) {
  std::optional<std::uint16_t> text;
  std::optional<std::uint16_t> back;
  std::optional<std::uint16_t> border;
  for (int row = 0; row < cell.height(); ++row)
    for (int column = 0; column < cell.width(); ++column) {
      const Ink ink = ink_of(glyph, column, row);
      if (!take(ink == Ink::text ? text : ink == Ink::back ? back : border, cell.at(column, row)))
        return false;
    }
  if (back && border && *border != border_of(*back))
    return false;
  const std::optional<std::uint16_t> &around = back ? back : border;
  return around && text != around;
}

class LineReader {
public:
  LineReader(const ScreenFont &font, const ScreenPixels &pixels) : _font(font), _pixels(pixels) {}

  std::u16string read(int line, const std::string &sent) const {
    std::u16string text;
    for (int column = 0; (column + 1) * _font.cellWidth() <= dimensions::screen_width; ++column) {
      const Cell cell(_pixels, column * _font.cellWidth(), line * _font.cellHeight(), _font.cellWidth(),
                      _font.cellHeight());
      const auto place = static_cast<std::size_t>(column);
      text += character(cell, place < sent.size() ? sent[place] : ' ');
    }
    text.erase(text.find_last_not_of(blank) + 1);
    return text;
  }

private:
  char16_t character(const Cell &cell, char sent) const {
    const auto expected = static_cast<unsigned char>(sent);
    if (shows(cell, expected))
      return expected;
    if (cell.hasOneColour())
      return blank;
    // Letters before the control characters, as which some fonts have the same pieces of frames and signs again.
    for (std::size_t i = 0; i < ScreenFont::characters; ++i)
      if (const auto code = static_cast<unsigned char>(blank + i); shows(cell, code))
        return code;
    return unreadable_cell;
  }

  bool shows(const Cell &cell, unsigned char character) const {
    const std::optional<CellGlyph> &glyph = _font.glyph(character);
    return glyph && simulator::shows(cell, *glyph);
  }

  const ScreenFont &_font;
  const ScreenPixels &_pixels;
};

} // namespace

std::vector<std::u16string> read_lines(const ScreenFont &font, const ScreenPixels &pixels,
                                       const std::vector<std::string> &sent) {
  std::vector<std::u16string> lines;
  if (!font.fault().empty())
    return lines;
  const LineReader reader(font, pixels);
  for (int line = 0; (line + 1) * font.cellHeight() <= dimensions::screen_height; ++line) {
    const auto place = static_cast<std::size_t>(line);
    lines.push_back(reader.read(line, place < sent.size() ? sent[place] : std::string()));
  }
  while (!lines.empty() && lines.back().empty())
    lines.pop_back();
  return lines;
}

} // namespace buttondriver::simulator
