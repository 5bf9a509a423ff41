// SPDX-License-Identifier: Apache-2.0
#include "model/expected/bdf_font.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace buttondriver::test {

namespace {

std::vector<bool> bits_of(const std::string &digits, int count) {
  std::vector<bool> bits;
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
    const int digit = std::stoi(digits.substr(i / 4, 1), nullptr, 16);
    bits.push_back((digit >> (3 - i % 4) & 1) != 0);
  }
  return bits;
}

} // namespace

BdfFont BdfFont::read(const std::string &file) {
  std::ifstream input(file);
  if (!input)
    throw std::runtime_error("cannot read the font " + file);
  BdfFont font;
  BdfGlyph glyph;
  int encoding = -1;
  std::string line;
  while (std::getline(input, line)) {
    std::istringstream words(line);
    std::string key;
    words >> key;
    if (key == "DEFAULT_CHAR") {
      int character = 0;
      words >> character;
      font._default_character = character;
    } else if (key == "STARTCHAR") {
      glyph = BdfGlyph();
    } else if (key == "ENCODING") {
      words >> encoding;
    } else if (key == "DWIDTH") {
      words >> glyph.advance;
    } else if (key == "BBX") {
      words >> glyph.width >> glyph.height;
    } else if (key == "BITMAP") {
      for (int row = 0; row < glyph.height && std::getline(input, line); ++row)
        glyph.rows.push_back(bits_of(line, glyph.width));
    } else if (key == "ENDCHAR") {
      font._glyphs[encoding] = glyph;
    }
  }
  return font;
}

const BdfGlyph *BdfFont::glyph(unsigned char character) const {
  auto place = _glyphs.find(character);
  if (place == _glyphs.end() && _default_character)
    place = _glyphs.find(*_default_character);
  return place == _glyphs.end() ? nullptr : &place->second;
}

} // namespace buttondriver::test
