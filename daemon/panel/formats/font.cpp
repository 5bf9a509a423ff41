// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/font.h"

#include "logging/standard_output.h"
#include "panel/formats/font_file.h"

#include <cerrno>
#include <ctime>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace buttondriver::panel {

namespace {

/// No glyph of the screens' fonts comes near. FreeType makes the memory for whatever size a font's file claims, half a
/// gigabyte for the largest, before it finds that the file has no such pixels.
constexpr unsigned highest_glyph_side = 4096;

/// Otherwise stat(2) fails for a font that is dated 2040, or whose file system counts further than 32 bits.
static_assert(sizeof(off_t) >= 8 && sizeof(ino_t) >= 8 && sizeof(time_t) >= 8);

bool ready = false;
FT_Library library = nullptr;
FT_Face current_face = nullptr;
FontFile current_file;       // the face reads from it for as long as it lives
GlyphCache kept_glyphs;      // of the face
RenderedGlyph last_rendered; // the last one for which kept_glyphs had no room
TextGlyph last_drawn;        // and how it is drawn

void release_face() {
  kept_glyphs.clear();
  last_rendered = {};
  if (current_face)
    FT_Done_Face(current_face);
  current_face = nullptr;
  current_file = {};
}

/// Null, with FreeType's number in `error`, when the bytes are no font.
FT_Face new_face(const std::vector<unsigned char> &bytes, FT_Error &error) {
  FT_Face face = nullptr;
  error = FT_New_Memory_Face(library, bytes.data(), static_cast<FT_Long>(bytes.size()), 0, &face);
  return error == 0 ? face : nullptr;
}

/// FreeType gets the font from memory: a file that is mapped and then cut short ends the process.
FT_Error open_face(const char *file) {
  if (const FT_Error error = read_font_file(file, current_file); error != 0)
    return error;
  FT_Error error = 0;
  current_face = new_face(current_file.content, error);
  // FT_New_Face gives up with this number where the same bytes in memory end before FreeType has seen what they are.
  if (error == FT_Err_Invalid_Stream_Operation)
    return FT_Err_Unknown_File_Format;
  if (error != 0 || current_file.unpacked.empty())
    return error;
  // Whether a packed font can be used is for FreeType to say. But it would unpack it again for each glyph.
  if (const FT_Face quick_face = new_face(current_file.unpacked, error)) {
    FT_Done_Face(current_face);
    current_face = quick_face;
    current_file.content = {};
  }
  return 0;
}

/// Whether the font in use has a glyph for the character that it is safe to load.
bool has_sensible_size(unsigned char character) {
  if (FT_Load_Char(current_face, character, FT_LOAD_BITMAP_METRICS_ONLY) != 0)
    return false;
  const FT_Bitmap &bitmap = current_face->glyph->bitmap;
  return bitmap.width <= highest_glyph_side && bitmap.rows <= highest_glyph_side;
}

} // namespace

void freetype_start() { ready = FT_Init_FreeType(&library) == 0; }

void freetype_end() {
  if (!ready)
    return;
  release_face();
  FT_Done_FreeType(library);
  ready = false;
}

bool freetype_ready() { return ready; }

int font_load(const char *file) {
  if (!file)
    return -1;
  struct stat status {};
  if (::stat(file, &status) != 0) {
    if (errno == ENOENT)
      print("Font file '%s' doesn't exist.\n", file);
    else
      print("stat('%s') returned error %d.\n", file, errno);
    return -1;
  }
  if (!ready)
    return -1;
  release_face();
  if (const FT_Error error = open_face(file); error != 0) {
    release_face();
    print("Error calling FT_New_Face(): error = %d\n", error);
    return -1;
  }
  if (current_face->num_fixed_sizes < 1)
    return -1;
  const FT_Bitmap_Size &size = current_face->available_sizes[0];
  return FT_Set_Pixel_Sizes(current_face, static_cast<FT_UInt>(size.width), static_cast<FT_UInt>(size.height)) == 0
             ? 0
             : -1;
}

RenderedGlyph render_glyph(unsigned char character) {
  if (!current_face || !has_sensible_size(character) || FT_Load_Char(current_face, character, FT_LOAD_RENDER) != 0)
    return {};
  FT_Glyph copy = nullptr;
  if (FT_Get_Glyph(current_face->glyph, &copy) != 0)
    return {};
  Glyph owned(copy);
  if (copy->format != FT_GLYPH_FORMAT_BITMAP)
    return {};
  // A conversion replaces the glyph and frees the old one; on failure the old one stays.
  FT_Glyph converted = owned.release();
  const FT_Error error = FT_Glyph_To_Bitmap(&converted, FT_RENDER_MODE_NORMAL, nullptr, 1);
  owned.reset(converted);
  if (error != 0)
    return {};
  const FT_Vector &advance = current_face->glyph->advance;
  return {std::move(owned), static_cast<int>(advance.x >> 6), static_cast<int>(advance.y >> 6)};
}

const TextGlyph *text_glyph(unsigned char character) {
  if (const TextGlyph *kept = kept_glyphs.find(character))
    return kept;
  RenderedGlyph rendered = render_glyph(character);
  if (!rendered)
    return nullptr;
  const FT_Bitmap &bitmap = rendered.bitmap();
  TextGlyph glyph{bitmap.width, bitmap.rows, rendered.advance_x, rendered.advance_y};
  glyph.is_drawable = bitmap.pitch == TextGlyph::drawable_pitch;
  glyph.bits = glyph.is_drawable ? bitmap.buffer : nullptr;
  if (const TextGlyph *kept = kept_glyphs.keep(character, glyph))
    return kept;
  last_rendered = std::move(rendered);
  last_drawn = glyph;
  return &last_drawn;
}

bool font_has_character(unsigned char character) {
  // FreeType gives the default character a place of its own in front of the others.
  return current_face && FT_Get_Char_Index(current_face, character) != 0;
}

int glyph_cell_size(int *width, int *height) {
  if (!width || !height || !ready)
    return -1;
  const TextGlyph *const glyph = text_glyph('A');
  if (!glyph)
    return -1;
  *width = static_cast<int>(glyph->width);
  *height = static_cast<int>(glyph->rows);
  return 0;
}

} // namespace buttondriver::panel
