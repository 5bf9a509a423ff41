// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace buttondriver::test {

/// One character of a bitmap font, as its source has it.
struct BdfGlyph {
  int width = 0;
  int height = 0;
  int advance = 0;                     ///< pixels from this character to the next
  std::vector<std::vector<bool>> rows; ///< `height` rows of `width` pixels, the top row first
};

/// A font read from its BDF source, without any library.
class BdfFont {
public:
  /// Throws std::runtime_error when the file cannot be read.
  static BdfFont read(const std::string &file);

  /// The glyph of a character, or that of the font's default character; null when there is neither.
  const BdfGlyph *glyph(unsigned char character) const;

private:
  std::map<int, BdfGlyph> _glyphs;
  std::optional<int> _default_character;
};

} // namespace buttondriver::test
