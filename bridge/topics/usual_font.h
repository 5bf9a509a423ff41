// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dimensions/panel_dimensions.h"

/// What fits a screen with a font of 8 x 16 pixels. The bridge does not know the font that a panel has; what fits with
/// this one is taken to fit.
namespace buttondriver::bridge::usual_font {

inline constexpr int lines = dimensions::screen_height / 16;
inline constexpr int characters = dimensions::screen_width / 8;

} // namespace buttondriver::bridge::usual_font
