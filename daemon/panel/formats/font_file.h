// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <vector>

namespace buttondriver::panel {

/// The most bytes that a font's file may have, and may have when it is unpacked. The largest of Debian's bitmap fonts
/// has 3 MB unpacked.
inline constexpr std::size_t largest_font_file = 4 * 1024 * 1024;
inline constexpr std::size_t largest_font = 16 * 1024 * 1024;

struct FontFile {
  std::vector<unsigned char> content;  ///< all that is in the file
  std::vector<unsigned char> unpacked; ///< what gzip packed, as far as it can be unpacked; empty for other files
};

/// Reads the font file at `path`. Returns 0, or the number that FT_New_Face gives, and `file` then holds nothing of
/// use. A file that is too large, or is packed otherwise than by gzip, is refused before FreeType would unpack it.
FT_Error read_font_file(const char *path, FontFile &file);

} // namespace buttondriver::panel
