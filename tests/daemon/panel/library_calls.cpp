// SPDX-License-Identifier: Apache-2.0
#include "library_calls.h"

#include <cstdlib>
#include <dlfcn.h>
#include <new>
#include <utility>
#include <zlib.h>

namespace library_calls = buttondriver::panel::library_calls;

namespace {

/// The function of this name that comes after this program's.
template <typename Function> Function *next(const char *name) {
  return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

FT_Error FT_New_Memory_Face(FT_Library library, const FT_Byte *bytes, FT_Long size, FT_Long index, FT_Face *face) {
  static auto *const make = next<decltype(FT_New_Memory_Face)>("FT_New_Memory_Face");
  const FT_Error error = make(library, bytes, size, index, face);
  if (error == 0 && library_calls::made_face)
    library_calls::made_face(*face);
  return error;
}

FT_Error FT_Load_Char(FT_Face face, FT_ULong character, FT_Int32 flags) {
  static auto *const load = next<decltype(FT_Load_Char)>("FT_Load_Char");
  const FT_Error error = load(face, character, flags);
  return error == 0 && library_calls::loaded_character ? library_calls::loaded_character(face->glyph, character, flags)
                                                       : error;
}

FT_Error FT_Get_Glyph(FT_GlyphSlot slot, FT_Glyph *glyph) {
  static auto *const copy = next<decltype(FT_Get_Glyph)>("FT_Get_Glyph");
  if (library_calls::copying_error != 0)
    return library_calls::copying_error;
  const FT_Error error = copy(slot, glyph);
  if (error == 0 && library_calls::copied_glyph)
    library_calls::copied_glyph(*glyph);
  return error;
}

FT_Error FT_Glyph_To_Bitmap(FT_Glyph *glyph, FT_Render_Mode mode, const FT_Vector *origin, FT_Bool destroy) {
  static auto *const convert = next<decltype(FT_Glyph_To_Bitmap)>("FT_Glyph_To_Bitmap");
  return library_calls::conversion_error != 0 ? library_calls::conversion_error : convert(glyph, mode, origin, destroy);
}

int inflateInit2_(z_streamp stream, int bits, const char *version, int size) {
  static auto *const start = next<decltype(inflateInit2_)>("inflateInit2_");
  const int error = std::exchange(library_calls::next_unpacking_error, 0);
  return error != 0 ? error : start(stream, bits, version, size);
}

} // extern "C"

void *operator new(std::size_t size) {
  ++library_calls::allocations;
  if (void *const memory = std::malloc(size > 0 ? size : 1))
    return memory;
  throw std::bad_alloc();
}

void *operator new[](std::size_t size) { return ::operator new(size); }

void *operator new[](std::size_t size, const std::nothrow_t &) noexcept {
  if (size >= library_calls::lacking_bytes)
    return nullptr;
  try {
    return ::operator new[](size);
  } catch (const std::bad_alloc &) {
    return nullptr;
  }
}

// What was taken from malloc goes back there, in each of the ways in which the compiler gives memory back.
void operator delete(void *memory) noexcept { std::free(memory); }
void operator delete[](void *memory) noexcept { std::free(memory); }
void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void *memory, std::size_t) noexcept { std::free(memory); }
