// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/bmp.h"

#include "logging/standard_output.h"
#include "logging/visible_text.h"
#include "panel/formats/colour.h"
#include "panel/formats/pixel_row.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>

namespace buttondriver::panel {

namespace {

/// Where the header's fields lie.
namespace at {
constexpr std::size_t signature = 0;
constexpr std::size_t file_size = 2;
constexpr std::size_t creator_1 = 6;
constexpr std::size_t creator_2 = 8;
constexpr std::size_t pixel_data = 10;
constexpr std::size_t header_size = 14;
constexpr std::size_t width = 18;
constexpr std::size_t height = 22;
constexpr std::size_t planes = 26;
constexpr std::size_t bits_per_pixel = 28;
constexpr std::size_t compression = 30;
constexpr std::size_t bitmap_size = 34;
constexpr std::size_t horizontal_resolution = 38;
constexpr std::size_t vertical_resolution = 42;
constexpr std::size_t colours = 46;
constexpr std::size_t important_colours = 50;
} // namespace at

constexpr std::uint32_t usable_header_size = 40;

std::string letter(std::uint8_t byte) {
  const char character = static_cast<char>(byte);
  return visible_text({&character, 1});
}

std::int32_t signed_32(ByteView bmp, std::size_t offset) {
  return static_cast<std::int32_t>(bmp.littleEndian32(offset));
}

bool has_usable_signature(ByteView bmp) { return bmp.u8(at::signature) == 'B' || bmp.u8(at::signature + 1) == 'M'; }
bool has_usable_header_size(ByteView bmp) { return bmp.littleEndian32(at::header_size) == usable_header_size; }
bool has_one_plane(ByteView bmp) { return bmp.littleEndian16(at::planes) == 1; }
bool has_24_bits(ByteView bmp) { return bmp.littleEndian16(at::bits_per_pixel) == 24; }

/// Where the pixels of a picture are found in its file.
struct PixelLayout {
  std::int64_t width;
  std::int64_t height;
  bool bottom_up;
  std::int64_t start;

  explicit PixelLayout(ByteView bmp)
      : width(signed_32(bmp, at::width)), height(std::abs(std::int64_t{signed_32(bmp, at::height)})),
        bottom_up(signed_32(bmp, at::height) >= 0), start(signed_32(bmp, at::pixel_data)) {}

  bool isTooLarge() const {
    return width < 0 || height > std::numeric_limits<std::int32_t>::max() || width * height > most_picture_pixels;
  }

  /// Rows of 24-bit pixels are padded by as many bytes as the width leaves over from a multiple of four.
  std::int64_t stride() const { return width * 3 + width % 4; }
  std::int64_t rowStart(std::int64_t row) const { return start + (bottom_up ? height - 1 - row : row) * stride(); }
};

void decode_pixels(ByteView bmp, const PixelLayout &layout, std::uint16_t *pixels, std::int64_t count) {
  for (std::int64_t row = 0; row * layout.width < count; ++row) {
    const std::int64_t columns = std::min(layout.width, count - row * layout.width);
    const std::int64_t start = layout.rowStart(row);
    if (start >= 0 && start + 3 * columns <= static_cast<std::int64_t>(bmp.size())) {
      bgr_row_to_rgb565(bmp.data() + start, pixels, static_cast<std::size_t>(columns));
      pixels += columns;
      continue;
    }
    // A negative offset becomes a huge one: both lie outside and read as zero.
    auto source = static_cast<std::uint64_t>(start);
    for (std::int64_t column = 0; column < columns; ++column, source += 3)
      *pixels++ = bgr_to_rgb565(bmp.u8(source), bmp.u8(source + 1), bmp.u8(source + 2));
  }
}

} // namespace

int bmp_check_header(ByteView bmp, BmpHeader *copy) {
  if (!bmp.data()) {
    print("BMP Data pointer is NULL! Exiting.");
    return -1;
  }
  if (!has_usable_signature(bmp)) {
    print("Invalid BMP Signature ('%s', '%s')!  Exiting.\n", letter(bmp.u8(at::signature)).c_str(),
          letter(bmp.u8(at::signature + 1)).c_str());
    return -1;
  }
  if (!has_usable_header_size(bmp)) {
    print("DIB Header Size is invalid. Exiting.");
    return -1;
  }
  if (!has_one_plane(bmp)) {
    print("\tInvalid number of colour planes! Exiting.");
    return -1;
  }
  if (copy)
    bmp.copyTo(copy->data(), copy->size());
  return 0;
}

int bmp_decode_24(ByteView bmp, std::int32_t *width, std::int32_t *height, PixelArray *pixels, std::size_t limit) {
  if (!bmp.data()) {
    print("BMP Data pointer is NULL! Exiting.");
    return -1;
  }
  if (!width || !height || !pixels) {
    print("One of the output pointers is NULL!");
    return -1;
  }
  if (bmp_check_header(bmp, nullptr) != 0)
    return -1;
  if (!has_24_bits(bmp)) {
    print("Only 24-bit depth BMP's are supported at this time.");
    return -1;
  }
  const auto fail = [&](const char *reason) {
    print("%s", reason);
    *width = -1;
    *height = -1;
    pixels->reset();
    return -1;
  };
  const PixelLayout layout(bmp);
  if (layout.isTooLarge())
    return fail("Could not allocate array for pixel data.");
  const auto count = static_cast<std::int64_t>(
      std::min<std::uint64_t>(static_cast<std::uint64_t>(layout.width * layout.height), limit));
  pixels->reset(new (std::nothrow) std::uint16_t[static_cast<std::size_t>(std::max<std::int64_t>(count, 1))]);
  if (!*pixels)
    return fail("Could not allocate array for pixel data.");
  if (reinterpret_cast<std::uintptr_t>(bmp.data()) + static_cast<std::uintptr_t>(layout.start) == 0)
    return fail("Bitmap data and associated pointer are corrupted.");
  decode_pixels(bmp, layout, pixels->get(), count);
  *width = static_cast<std::int32_t>(layout.width);
  *height = static_cast<std::int32_t>(layout.height);
  return 0;
}

void bmp_print_header(ByteView bmp) {
  if (bmp_check_header(bmp, nullptr) != 0)
    return;
  const auto word = [&](std::size_t offset) { return signed_32(bmp, offset); };
  const auto half = [&](std::size_t offset) { return int{bmp.littleEndian16(offset)}; };
  print("BMP Magic Signature = %s%s\n", letter(bmp.u8(at::signature)).c_str(),
        letter(bmp.u8(at::signature + 1)).c_str());
  print("Overall BMP File Size = %d bytes\n", word(at::file_size));
  print("Creator 1 = %d\n", half(at::creator_1));
  print("Creator 2 = %d\n", half(at::creator_2));
  print("BMP Offset = %d (0x%x)\n", word(at::pixel_data), bmp.littleEndian32(at::pixel_data));
  print("DIB Header Data:");
  print("\tHeader Size = %d bytes\n", word(at::header_size));
  print("\tBMP Width = %d pixels\n", word(at::width));
  print("\tBMP Height = %d pixels\n", word(at::height));
  print("\tNumber of colour planes = %d\n", half(at::planes));
  print("\tColour Depth = %d\n", half(at::bits_per_pixel));
  print("\tCompression Type = %d\n", word(at::compression));
  print("\tBitmap size = %d bytes\n", word(at::bitmap_size));
  print("\tHorizontal Resolution = %d pixel/m\n", word(at::horizontal_resolution));
  print("\tVertical Resolution = %d pixel/m\n", word(at::vertical_resolution));
  print("\tNumber of colours = %d\n", word(at::colours));
  print("\tNumber of important colours = %d\n", word(at::important_colours));
}

ByteView bmp_claimed_bytes(const std::uint8_t *bmp) {
  const ByteView header(bmp, bmp_header_size);
  if (!bmp)
    return header;
  if (!has_usable_signature(header))
    return {bmp, at::file_size};
  if (!has_usable_header_size(header))
    return {bmp, at::width};
  if (!has_one_plane(header))
    return {bmp, at::bits_per_pixel};
  const PixelLayout layout(header);
  if (!has_24_bits(header) || layout.isTooLarge())
    return {bmp, at::compression};
  if (layout.width == 0 || layout.height == 0)
    return header;
  const std::int64_t end = layout.rowStart(layout.bottom_up ? 0 : layout.height - 1) + layout.width * 3;
  return {bmp, static_cast<std::size_t>(std::max<std::int64_t>(end, bmp_header_size))};
}

int bmp_check_header(const std::uint8_t *bmp, BmpHeader *copy) {
  return bmp_check_header(ByteView(bmp, bmp_header_size), copy);
}

int bmp_decode_24(const std::uint8_t *bmp, std::int32_t *width, std::int32_t *height, PixelArray *pixels) {
  return bmp_decode_24(bmp_claimed_bytes(bmp), width, height, pixels);
}

void bmp_print_header(const std::uint8_t *bmp) { bmp_print_header(ByteView(bmp, bmp_header_size)); }

} // namespace buttondriver::panel
