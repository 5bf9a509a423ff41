// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_GLYPH_H

#include <atomic>
#include <cstddef>
#include <functional>

/// This test program has some functions of FreeType and zlib, and operator new, in front of those of the libraries.
/// They call what stands here, if anything does, and the library's own otherwise.
namespace buttondriver::panel::library_calls {

/// Called after a face was made: may change it.
inline std::function<void(FT_Face face)> made_face;
/// Called after a character was loaded: may change what was loaded, and returns the error.
inline std::function<FT_Error(FT_GlyphSlot slot, FT_ULong character, FT_Int32 flags)> loaded_character;
/// Called after a glyph was copied: may change it.
inline std::function<void(FT_Glyph glyph)> copied_glyph;
/// What these return at once, unless it is 0.
inline FT_Error copying_error = 0;
inline FT_Error conversion_error = 0;
/// What the next start of unpacking returns, unless it is 0; the ones after that are zlib's.
inline int next_unpacking_error = 0;
/// Arrays of at least so many bytes cannot be had where a lack is reported.
inline std::size_t lacking_bytes = static_cast<std::size_t>(-1);

/// How often memory was allocated with operator new so far, by any thread.
inline std::atomic<std::size_t> allocations = 0;

/// Removes what stands there when it goes.
struct Restore {
  Restore() = default;
  ~Restore() {
    made_face = nullptr;
    loaded_character = nullptr;
    copied_glyph = nullptr;
    copying_error = 0;
    conversion_error = 0;
    next_unpacking_error = 0;
    lacking_bytes = static_cast<std::size_t>(-1);
  }
  Restore(const Restore &) = delete;
  Restore &operator=(const Restore &) = delete;
};

} // namespace buttondriver::panel::library_calls
