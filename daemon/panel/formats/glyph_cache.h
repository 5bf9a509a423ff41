// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>

namespace buttondriver::panel {

/// A character as text is drawn with it. Numbers are in pixels.
struct TextGlyph {
  /// The bytes of every row of a glyph that can be drawn.
  static constexpr int drawable_pitch = 4;

  unsigned width = 0;
  unsigned rows = 0;
  int advance_x = 0;
  int advance_y = 0;
  /// Whether its rows have drawable_pitch bytes. Otherwise there are no bits.
  bool is_drawable = false;
  /// The rows from the top, the leftmost pixel in the highest bit of a row's first byte. Of a row that is wider than 32
  /// pixels there are 32.
  const unsigned char *bits = nullptr;
};

/// The characters of one font that were rendered, so that they need not be again. It takes 32 KiB for their bits, which
/// is enough for 256 characters of 32 rows, and 8 KiB for the rest, and allocates nothing. Not to be copied: what it
/// keeps points into it.
class GlyphCache {
public:
  GlyphCache() = default;
  GlyphCache(const GlyphCache &) = delete;
  GlyphCache &operator=(const GlyphCache &) = delete;

  /// The character as it was kept; null when it was not. It holds until clear().
  const TextGlyph *find(unsigned char character) const { return _is_kept[character] ? &_glyphs[character] : nullptr; }
  /// Keeps a copy of `glyph` and of its bits, and returns the copy; null when there is no room for the bits. A
  /// character is kept once.
  const TextGlyph *keep(unsigned char character, const TextGlyph &glyph);
  void clear();

private:
  static constexpr std::size_t characters = 256;
  static constexpr std::size_t most_bytes = characters * 32 * TextGlyph::drawable_pitch;

  std::array<TextGlyph, characters> _glyphs{};
  std::array<bool, characters> _is_kept{};
  std::array<unsigned char, most_bytes> _bits{};
  std::size_t _used = 0;
};

} // namespace buttondriver::panel
