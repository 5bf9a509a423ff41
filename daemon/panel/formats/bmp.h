// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>

/// Uncompressed 24-bit BMP files. The bytes are only read; those past their end read as zero. A fault is printed
/// on standard output, and the result is then -1. Where only a pointer is given, the picture is as long as it claims
/// itself: all of that has to be there. A null pointer has no bytes.
namespace buttondriver::panel {

inline constexpr std::size_t bmp_header_size = 54;
using BmpHeader = std::array<std::uint8_t, bmp_header_size>;

/// 16-bit 5-6-5 pixels, top row first.
using PixelArray = std::unique_ptr<std::uint16_t[]>;

/// A picture of more pixels counts as an allocation that failed.
inline constexpr std::int64_t most_picture_pixels = std::int64_t{1} << 26;

/// Returns 0 when `bmp` starts with a header that can be used, and copies it to `copy` unless that is null. A file is
/// refused for its signature only when both letters are wrong.
int bmp_check_header(ByteView bmp, BmpHeader *copy);

/// Decodes a picture into a new array. Of a picture with more than `limit` pixels only the first `limit` are decoded
/// and kept. A negative height means that the rows are stored top-down; `height` is then its magnitude.
/// When the pixels cannot be decoded, the places hold -1, -1 and null; after an earlier fault they are unchanged.
int bmp_decode_24(ByteView bmp, std::int32_t *width, std::int32_t *height, PixelArray *pixels,
                  std::size_t limit = std::numeric_limits<std::size_t>::max());

/// Prints every field of the header, after checking it.
void bmp_print_header(ByteView bmp);

/// The bytes that the picture at `bmp` claims to have, up to its last pixel; of one that is refused only those that
/// show that. None for null.
ByteView bmp_claimed_bytes(const std::uint8_t *bmp);

int bmp_check_header(const std::uint8_t *bmp, BmpHeader *copy);
int bmp_decode_24(const std::uint8_t *bmp, std::int32_t *width, std::int32_t *height, PixelArray *pixels);
void bmp_print_header(const std::uint8_t *bmp);

} // namespace buttondriver::panel
