// SPDX-License-Identifier: Apache-2.0
#include "model/commands/message_bytes.h"
#include "model/expected/drawings.h"

namespace buttondriver::test {

namespace {

constexpr std::int64_t most_pixels = 1 << 26;

bool is_usable_header(const std::string &bmp) {
  // One right letter is enough.
  const bool has_signature = byte_at(bmp, 0) == 'B' || byte_at(bmp, 1) == 'M';
  return has_signature && file_number(bmp, 14, 4) == 40 && file_number(bmp, 26, 2) == 1 &&
         file_number(bmp, 28, 2) == 24;
}

std::uint16_t screen_colour(const std::string &bmp, std::uint64_t place) {
  const unsigned blue = byte_at(bmp, place);
  const unsigned green = byte_at(bmp, place + 1);
  const unsigned red = byte_at(bmp, place + 2);
  return static_cast<std::uint16_t>(red / 8 * 2048 + green / 4 * 32 + blue / 8);
}

} // namespace

std::optional<Drawing> picture(const std::string &bmp, std::int32_t x, std::int32_t y) {
  if (bmp.empty() || !is_usable_header(bmp))
    return std::nullopt;
  const std::int64_t width = static_cast<std::int32_t>(file_number(bmp, 18, 4));
  const std::int64_t stored_height = static_cast<std::int32_t>(file_number(bmp, 22, 4));
  const std::int64_t height = stored_height < 0 ? -stored_height : stored_height;
  if (width < 0 || width * height > most_pixels)
    return std::nullopt;
  // Counted from the file's first byte, backwards too: what lies before it reads as zero.
  const std::int64_t pixels_begin = static_cast<std::int32_t>(file_number(bmp, 10, 4));
  const std::int64_t row_bytes = 3 * width + width % 4;
  const std::size_t count = static_cast<std::size_t>(width * height) & 0xFFFFU;
  Drawing drawing = {{std::int64_t{x} + 4, x + width + 3}, {std::int64_t{y} + 1, y + height}, {}};
  drawing.pixels.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto row = static_cast<std::int64_t>(i) / width;
    const std::int64_t column = static_cast<std::int64_t>(i) % width;
    const std::int64_t stored_row = stored_height < 0 ? row : height - 1 - row;
    const std::int64_t place = pixels_begin + stored_row * row_bytes + 3 * column;
    drawing.pixels.push_back(screen_colour(bmp, static_cast<std::uint64_t>(place)));
  }
  return drawing;
}

} // namespace buttondriver::test
