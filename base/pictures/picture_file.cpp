// SPDX-License-Identifier: Apache-2.0
#include "pictures/picture_file.h"

#include "bytes/view_of.h"
#include "pictures/bmp_file.h"
#include "pictures/jpeg_outline.h"

#include <QFile>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace {

/// Takes every table and buffer of the library that does not depend on the picture.
constexpr std::size_t smallest_limit = std::size_t{1024} * 1024;

/// What one block of memory may have. A small compressed file can ask for far more than its picture takes.
thread_local std::size_t largest_block = smallest_limit;

// Zeros, because a damaged file can make the library show what it has not written.
void *bounded_malloc(std::size_t size) { return size <= largest_block ? std::calloc(size, 1) : nullptr; }
void *bounded_realloc(void *block, std::size_t size) {
  return size <= largest_block ? std::realloc(block, size) : nullptr;
}

} // namespace

// Everything of the library is compiled here, for this file alone, and only the formats that are offered.
#define STBI_MAX_DIMENSIONS 32768
#define STBI_MALLOC(size) bounded_malloc(size)
#define STBI_REALLOC(block, size) bounded_realloc(block, size)
#define STBI_FREE(block) std::free(block)
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_ONLY_BMP
#define STBI_ONLY_GIF
#define STBI_NO_STDIO
#define STBI_NO_LINEAR
#define STBI_NO_HDR
// So that a panel runs what was tested at a desk.
#define STBI_NO_SIMD
#define STBI_FAILURE_USERMSG
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#include <stb_image.h>
#define STB_IMAGE_RESIZE_STATIC
#define STB_IMAGE_RESIZE_IMPLEMENTATION
#include <stb_image_resize.h>
#define STBI_WRITE_NO_STDIO
#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb_image_write.h>

namespace buttondriver {

namespace {

static_assert(longest_side == STBI_MAX_DIMENSIONS);

/// Lets the library take what a picture of a size needs, as long as this lives.
class MemoryFor {
public:
  /// Both sides within the bounds.
  MemoryFor(int width, int height, std::size_t file_size) {
    // Two bytes for each of four components, twice because buffers grow by doubling; a JPEG picture is filled up to
    // whole blocks. The compressed data are gathered in a buffer of their own.
    const auto blocks = (static_cast<std::uint64_t>(width) + 32) * (static_cast<std::uint64_t>(height) + 32) * 16;
    largest_block = static_cast<std::size_t>(std::min<std::uint64_t>(smallest_limit + 2 * file_size + blocks, INT_MAX));
  }
  ~MemoryFor() { largest_block = smallest_limit; }
  MemoryFor(const MemoryFor &) = delete;
  MemoryFor &operator=(const MemoryFor &) = delete;
};

/// Hands a file to the library and notices when that wants more than there is: for most formats the library takes zeros
/// for what is missing, and draws something.
class FileReader {
public:
  explicit FileReader(ByteView file) : _file(file) {}

  bool hasRunOut() const { return _has_run_out; }

  static int read(void *reader, char *destination, int size) {
    return static_cast<FileReader *>(reader)->take(destination, static_cast<std::size_t>(std::max(size, 0)));
  }
  static void skip(void *reader, int size) {
    static_cast<FileReader *>(reader)->advance(static_cast<std::size_t>(std::max(size, 0)));
  }
  static int isAtEnd(void *reader) { return static_cast<FileReader *>(reader)->rest() == 0; }

private:
  std::size_t rest() const { return _file.size() - _place; }

  int take(char *destination, std::size_t size) {
    if (rest() == 0 && size > 0)
      _has_run_out = true;
    const std::size_t count = std::min(size, rest());
    _file.from(_place).copyTo(destination, count);
    _place += count;
    return static_cast<int>(count);
  }

  void advance(std::size_t size) {
    if (size > rest())
      _has_run_out = true;
    _place += std::min(size, rest());
  }

  const ByteView _file;
  std::size_t _place = 0;
  bool _has_run_out = false;
};

constexpr stbi_io_callbacks callbacks{FileReader::read, FileReader::skip, FileReader::isAtEnd};

struct Format {
  const char *name;
  const char *beginning;
};

constexpr Format formats[] = {{"PNG", "\x89PNG\r\n\x1A\n"}, {"JPEG", "\xFF\xD8\xFF"}, {"BMP", "BM"}, {"GIF", "GIF8"}};

const Format *format_of(const QByteArray &file) {
  for (const Format &format : formats)
    if (file.startsWith(format.beginning))
      return &format;
  return nullptr;
}

Failure not_readable(const QString &reason) {
  return Failure{QStringLiteral("not a picture that can be read (%1)").arg(reason)};
}

Failure not_decoded(const Format &format, const FileReader &reader) {
  if (reader.hasRunOut())
    return Failure{QStringLiteral("the picture is cut short")};
  return not_readable(QStringLiteral("%1: %2").arg(QLatin1String(format.name), QLatin1String(stbi_failure_reason())));
}

/// What a file says of its picture before anything is decompressed.
struct FileOutline {
  const Format *format;
  int width; ///< as the pixels are stored
  int height;
  int orientation; ///< 1 to 8, as Exif numbers it
};

/// Fails for what can be seen to be no picture, or too large a one.
Outcome<FileOutline> outline_of(const QByteArray &file) {
  const Format *format = format_of(file);
  if (!format)
    return not_readable(QStringLiteral("neither PNG nor JPEG, BMP or GIF"));
  if (is_cut_short_bmp(view_of(file)))
    return Failure{QStringLiteral("the picture is cut short")};

  JpegOutline jpeg;
  if (format->name == QLatin1String("JPEG"))
    jpeg = outline_of_jpeg(view_of(file));
  if (!jpeg.has_sound_tables)
    return not_readable(QStringLiteral("JPEG: a table of codes is damaged"));

  int width = 0;
  int height = 0;
  int components = 0;
  FileReader header(view_of(file));
  if (!stbi_info_from_callbacks(&callbacks, &header, &width, &height, &components))
    return not_decoded(*format, header);
  // Negative in a BMP that begins with its top row.
  height = std::abs(std::max(height, -INT_MAX));
  if (width <= 0 || height <= 0)
    return not_readable(QStringLiteral("it has no pixels"));
  if (width > longest_side || height > longest_side || std::int64_t{width} * height > most_pixels)
    return Failure{QStringLiteral("a picture of %1x%2 is too large; it may have %3 pixels, and %4 on each side")
                       .arg(width)
                       .arg(height)
                       .arg(most_pixels)
                       .arg(longest_side)};
  return FileOutline{format, width, height, jpeg.orientation};
}

std::uint8_t on_black(unsigned component, unsigned opacity) {
  return static_cast<std::uint8_t>((component * opacity + 127) / 255);
}

} // namespace

Outcome<QSize> size_of_picture(const QByteArray &file) {
  const Outcome<FileOutline> outline = outline_of(file);
  if (!outline)
    return outline.failure();
  const QSize stored(outline->width, outline->height);
  constexpr int first_turned_orientation = 5;
  return outline->orientation < first_turned_orientation ? stored : stored.transposed();
}

Outcome<Picture> read_picture(const QByteArray &file) {
  const Outcome<FileOutline> outline = outline_of(file);
  if (!outline)
    return outline.failure();

  int width = outline->width;
  int height = outline->height;
  int components = 0;
  const MemoryFor memory(width, height, static_cast<std::size_t>(file.size()));
  FileReader reader(view_of(file));
  const std::unique_ptr<stbi_uc, decltype(&std::free)> pixels(
      stbi_load_from_callbacks(&callbacks, &reader, &width, &height, &components, STBI_rgb_alpha), &std::free);
  if (!pixels || reader.hasRunOut())
    return not_decoded(*outline->format, reader);

  const bool is_opaque = is_bmp_without_opacity(view_of(file));
  Picture picture(QSize(width, height));
  const stbi_uc *pixel = pixels.get();
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x, pixel += 4) {
      const unsigned opacity = is_opaque ? 255 : pixel[3];
      picture.set(x, y, {on_black(pixel[0], opacity), on_black(pixel[1], opacity), on_black(pixel[2], opacity)});
    }
  }
  if (outline->orientation != 1)
    return picture.turnedUpright(outline->orientation);
  return picture;
}

Outcome<Picture> read_picture_file(const QString &name) {
  QFile file(name);
  if (!file.open(QIODevice::ReadOnly))
    return not_readable(file.errorString());
  return read_picture(file.readAll());
}

Picture scaled(const Picture &picture, QSize size) {
  Picture result(size);
  if (!stbir_resize_uint8(picture.components(), picture.width(), picture.height(), 0, result.components(), size.width(),
                          size.height(), 0, 3))
    throw std::bad_alloc();
  return result;
}

QByteArray write_png(const Picture &picture) {
  QByteArray file;
  const auto append = [](void *target, void *bytes, int size) {
    static_cast<QByteArray *>(target)->append(static_cast<const char *>(bytes), size);
  };
  stbi_write_png_to_func(append, &file, picture.width(), picture.height(), 3, picture.components(), 0);
  return file;
}

} // namespace buttondriver
