// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/font_file.h"

#include "files/regular_file.h"

#include <memory>
#include <sys/stat.h>
#include <zlib.h>

namespace buttondriver::panel {

namespace {

struct CloseGzip {
  void operator()(gzFile_s *file) const { gzclose_r(file); }
};

bool starts_with(const std::vector<unsigned char> &content, unsigned char first, unsigned char second) {
  return content.size() >= 2 && content[0] == first && content[1] == second;
}

/// FreeType would unpack these by itself, without a bound.
bool is_packed_otherwise(const std::vector<unsigned char> &content) {
  return starts_with(content, 0x1F, 0x9D) || starts_with(content, 'B', 'Z') || starts_with(content, 0x1F, 0x8B) ||
         starts_with(content, 'w', 'O');
}

/// Null when there is nothing to read a font from.
std::unique_ptr<gzFile_s, CloseGzip> open_packed(const char *path) {
  OwnedDescriptor descriptor = open_regular_file(path);
  struct stat status = {};
  if (!descriptor || ::fstat(descriptor.get(), &status) != 0 || status.st_size > static_cast<off_t>(largest_font_file))
    return nullptr;
  std::unique_ptr<gzFile_s, CloseGzip> file(gzdopen(descriptor.get(), "rb"));
  if (file)
    descriptor.release();
  return file;
}

} // namespace

FT_Error read_font_file(const char *path, std::vector<unsigned char> &content) {
  // Reads a file as it is that is not compressed.
  const auto file = open_packed(path);
  if (!file)
    return FT_Err_Cannot_Open_Resource;
  constexpr std::size_t piece = 64 * 1024;
  content.clear();
  for (int got = static_cast<int>(piece); got > 0;) {
    const std::size_t size = content.size();
    content.resize(size + piece);
    got = gzread(file.get(), content.data() + size, static_cast<unsigned>(piece));
    if (got < 0)
      return FT_Err_Unknown_File_Format;
    content.resize(size + static_cast<std::size_t>(got));
    if (content.size() > largest_font)
      return FT_Err_Array_Too_Large;
  }
  if (content.empty())
    return FT_Err_Cannot_Open_Stream;
  return is_packed_otherwise(content) ? FT_Err_Unknown_File_Format : FT_Err_Ok;
}

} // namespace buttondriver::panel
