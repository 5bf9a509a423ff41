// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/glyph_cache.h"

#include <algorithm>

namespace buttondriver::panel {

const TextGlyph *GlyphCache::keep(unsigned char character, const TextGlyph &glyph) {
  TextGlyph copy = glyph;
  copy.bits = nullptr;
  if (glyph.is_drawable) {
    if (glyph.rows > (most_bytes - _used) / TextGlyph::drawable_pitch)
      return nullptr;
    unsigned char *const place = _bits.data() + _used;
    const std::size_t bytes = std::size_t{glyph.rows} * TextGlyph::drawable_pitch;
    std::copy_n(glyph.bits, bytes, place);
    copy.bits = place;
    _used += bytes;
  }
  _glyphs[character] = copy;
  _is_kept[character] = true;
  return &_glyphs[character];
}

void GlyphCache::clear() {
  _is_kept.fill(false);
  _used = 0;
}

} // namespace buttondriver::panel
