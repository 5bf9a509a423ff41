// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/image.h"

#include "logging/standard_output.h"
#include "panel/registers/registers.h"
#include "panel/tft/pixel_window.h"
#include "panel/tft/tft.h"

#include <optional>

namespace buttondriver::panel {

namespace {

/// A transfer's count has 16 bits, so no more pixels than these are ever sent.
constexpr std::size_t most_sent_pixels = 0xFFFF;

} // namespace

int tft_draw_image(int screen_id, int x, int y, ByteView bmp) {
  if (!bmp.data()) {
    print("Input parameter 'data' pointer is NULL.");
    return -1;
  }
  const std::optional<unsigned> mask = tft_checked_mask(screen_id);
  if (!mask)
    return -1;
  std::int32_t width = 0;
  std::int32_t height = 0;
  PixelArray pixels;
  if (bmp_decode_24(bmp, &width, &height, &pixels, most_sent_pixels) != 0)
    return -1;
  tft_write_register(*mask, tft_register::vertical_window, window_rows(y, std::int64_t{y} + height - 1));
  tft_write_register(*mask, tft_register::horizontal_window, window_columns(x, std::int64_t{x} + width - 1));
  tft_start_pixels(*mask);
  tft_write_pixels(*mask, pixels.get(), static_cast<std::uint32_t>(std::int64_t{width} * height));
  tft_reset_window();
  return 0;
}

} // namespace buttondriver::panel
