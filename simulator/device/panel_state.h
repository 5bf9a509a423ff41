// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dimensions/panel_dimensions.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace buttondriver::simulator {

/// The visible pixels of one screen, row by row from the top, each 5-6-5 red, green, blue.
using ScreenPixels = std::array<std::uint16_t, dimensions::screen_pixels>;

/// The panel but for its screens, at one moment.
struct PanelLamps {
  std::array<bool, dimensions::led_count> button_leds{};
  std::array<bool, dimensions::led_count> status_leds{};
  std::array<bool, dimensions::toggle_indicator_count> toggles{};
  /// Brightness of the screens, 0 to dimensions::highest_intensity_level.
  int intensity = dimensions::highest_intensity_level;
};

/// What a person in front of the panel sees at one moment.
struct PanelState : PanelLamps {
  std::array<ScreenPixels, dimensions::screen_count> screens{};
};

} // namespace buttondriver::simulator
