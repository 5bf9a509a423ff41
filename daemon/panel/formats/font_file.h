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

/// Reads the font file at `path`, unpacked if it is compressed by gzip; no other compression is undone. Returns 0, or
/// FreeType's number for what is wrong, and `content` then holds nothing of use.
FT_Error read_font_file(const char *path, std::vector<unsigned char> &content);

} // namespace buttondriver::panel
