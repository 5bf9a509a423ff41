// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/formats/glyph_cache.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_GLYPH_H

#include <memory>

/// The one font that text is drawn with. State is process-wide and has no lock, as for all of this room.
namespace buttondriver::panel {

/// Starts FreeType; what it returned is remembered in freetype_ready.
void freetype_start();
/// Gives up the font and ends FreeType, if it was started.
void freetype_end();
bool freetype_ready();

/// Loads the bitmap font in `file` and selects its first size. Returns 0, or -1. A file that is missing or is
/// no font is printed on standard output. A missing file keeps the font in use; one that is no font leaves none at all.
int font_load(const char *file);

struct DoneGlyph {
  void operator()(FT_GlyphRec *glyph) const { FT_Done_Glyph(glyph); }
};
using Glyph = std::unique_ptr<FT_GlyphRec, DoneGlyph>;

/// A rendered character of the font in use, and how far it moves the pen, in pixels.
struct RenderedGlyph {
  Glyph glyph;
  int advance_x = 0;
  int advance_y = 0;

  explicit operator bool() const { return glyph != nullptr; }
  const FT_Bitmap &bitmap() const { return reinterpret_cast<const FT_BitmapGlyphRec *>(glyph.get())->bitmap; }
};

/// The bitmap of a character; empty when there is no font, or the font has no bitmap for it.
RenderedGlyph render_glyph(unsigned char character);

/// The character as text is drawn with it, null where render_glyph is empty. It is rendered when it is first asked for
/// and then kept with the font; one that could not be rendered is tried again the next time, and one for whose bits
/// GlyphCache has no room is rendered each time. What is returned holds until the next call.
const TextGlyph *text_glyph(unsigned char character);

/// Whether the font in use has this character itself. For one that it has not, it draws its default character.
bool font_has_character(unsigned char character);

/// The size of the character cells in pixels: that of the bitmap of "A". Returns 0, or -1 when a place is null or
/// there is no such glyph.
int glyph_cell_size(int *width, int *height);

} // namespace buttondriver::panel
