// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/font_file.h"

#include "files/regular_file.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>
#include <zlib.h>

namespace buttondriver::panel {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::size_t piece = 64 * 1024;

bool starts_with(const Bytes &content, unsigned char first, unsigned char second) {
  return content.size() >= 2 && content[0] == first && content[1] == second;
}

bool is_packed_by_gzip(const Bytes &content) { return starts_with(content, 0x1F, 0x8B); }

/// FreeType would unpack these by itself, without a bound.
bool is_packed_otherwise(const Bytes &content) {
  return starts_with(content, 0x1F, 0x9D) || starts_with(content, 'B', 'Z') || starts_with(content, 'w', 'O');
}

/// False when the file cannot be read, or has more than `limit` bytes.
bool read_all(int descriptor, std::size_t limit, Bytes &content) {
  content.clear();
  for (;;) {
    const std::size_t size = content.size();
    content.resize(size + std::min(piece, limit + 1 - size));
    const ssize_t got = ::read(descriptor, content.data() + size, content.size() - size);
    if (got < 0)
      return false;
    content.resize(size + static_cast<std::size_t>(got));
    if (got == 0)
      return true;
    if (content.size() > limit)
      return false;
  }
}

/// False when there is more than `limit` bytes. A fault ends what is unpacked; those of the check sum and the length
/// come after all of it, and FreeType ignores them as well.
bool unpack(const Bytes &packed, std::size_t limit, Bytes &unpacked) {
  z_stream stream = {};
  constexpr int gzip_only = 16;
  if (::inflateInit2(&stream, MAX_WBITS + gzip_only) != Z_OK)
    return true;
  stream.next_in = const_cast<unsigned char *>(packed.data()); // zlib only reads it
  stream.avail_in = static_cast<uInt>(packed.size());
  int status = Z_OK;
  while (status == Z_OK && unpacked.size() <= limit) {
    const std::size_t size = unpacked.size();
    unpacked.resize(size + piece);
    stream.next_out = unpacked.data() + size;
    stream.avail_out = static_cast<uInt>(piece);
    status = ::inflate(&stream, Z_NO_FLUSH);
    unpacked.resize(size + piece - stream.avail_out);
  }
  ::inflateEnd(&stream);
  return unpacked.size() <= limit;
}

} // namespace

FT_Error read_font_file(const char *path, FontFile &file) {
  file = {};
  const OwnedDescriptor descriptor = open_regular_file(path);
  // What can be opened but has no length, such as a folder, is an unknown format to FreeType.
  if (!descriptor)
    return errno == EINVAL ? FT_Err_Unknown_File_Format : FT_Err_Cannot_Open_Resource;
  if (!read_all(descriptor.get(), largest_font_file, file.content))
    return FT_Err_Cannot_Open_Resource;
  if (file.content.empty() || is_packed_otherwise(file.content))
    return FT_Err_Unknown_File_Format;
  if (is_packed_by_gzip(file.content) && !unpack(file.content, largest_font, file.unpacked))
    return FT_Err_Array_Too_Large;
  return FT_Err_Ok;
}

} // namespace buttondriver::panel
