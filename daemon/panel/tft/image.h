// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"
#include "panel/formats/bmp.h"

#include <cstdint>

namespace buttondriver::panel {

/// Draws an uncompressed 24-bit BMP file with its top left corner at column `x`, row `y` of a screen (0, 1, 2, or -1
/// for all). A picture that sticks out is not clipped: the window ends at the screen's edge, and all pixels are sent.
/// Returns 0. When the screen does not exist or the picture cannot be read, prints why on standard output and returns
/// -1; the screen is then unchanged.
int tft_draw_image(int screen_id, int x, int y, ByteView bmp);

/// The same for a picture that is as long as it claims itself. All of that has to be there.
inline int tft_draw_image(int screen_id, int x, int y, const std::uint8_t *bmp) {
  return tft_draw_image(screen_id, x, y, bmp_claimed_bytes(bmp));
}

} // namespace buttondriver::panel
