// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/panel_state.h"

#include <QImage>

namespace buttondriver::simulator {

/// What our pictures say about their resolution (96 an inch), so that the same picture is the same file everywhere.
inline constexpr int dots_per_metre = 3780;

/// One screen as a picture of 128 x 128 opaque pixels (QImage::Format_RGB32). Safe to call from any thread.
///
/// Each 5 or 6 bit channel is widened to 8 bits by repeating its upper bits below, so that 0 stays 0 and the highest
/// value becomes 255. The channel is then multiplied by (intensity + 21) / 84 and rounded to the nearest integer,
/// halves up: intensity 63 shows the true colours, intensity 0 a quarter of them, as on a panel whose light never goes
/// out. An intensity above dimensions::highest_intensity_level counts as dimensions::highest_intensity_level.
QImage screen_image(const ScreenPixels &pixels, int intensity);

} // namespace buttondriver::simulator
