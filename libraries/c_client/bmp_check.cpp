// SPDX-License-Identifier: Apache-2.0
#include "c_client/bmp_check.h"

#include <cstdint>
#include <cstdlib>

namespace buttondriver {

namespace {

/// Where the header's fields lie.
namespace at {
constexpr std::size_t pixel_data = 10;
constexpr std::size_t header_size = 14;
constexpr std::size_t width = 18;
constexpr std::size_t height = 22;
constexpr std::size_t planes = 26;
constexpr std::size_t bits_per_pixel = 28;
constexpr std::size_t compression = 30;
constexpr std::size_t end_of_header = 54;
} // namespace at

} // namespace

bool is_drawable_bmp(ByteView bmp) {
  if (bmp.size() < at::end_of_header || bmp.u8(0) != 'B' || bmp.u8(1) != 'M')
    return false;
  if (bmp.littleEndian32(at::header_size) != 40 || bmp.littleEndian16(at::planes) != 1 ||
      bmp.littleEndian16(at::bits_per_pixel) != 24 || bmp.littleEndian32(at::compression) != 0)
    return false;
  const std::int64_t width = static_cast<std::int32_t>(bmp.littleEndian32(at::width));
  const std::int64_t height = std::abs(std::int64_t{static_cast<std::int32_t>(bmp.littleEndian32(at::height))});
  const std::int64_t start = bmp.littleEndian32(at::pixel_data);
  const auto size = static_cast<std::int64_t>(bmp.size());
  // A row longer than the file would make the products below overflow.
  if (width < 1 || width > size || height < 1 || height > size || start < static_cast<std::int64_t>(at::end_of_header))
    return false;
  const std::int64_t row_bytes = width * 3;
  const std::int64_t stride = (row_bytes + 3) / 4 * 4;
  // The padding of the last row may be missing.
  return start + (height - 1) * stride + row_bytes <= size;
}

} // namespace buttondriver
