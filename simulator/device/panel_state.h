// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace buttondriver::simulator {

inline constexpr std::size_t screen_count = 3;
inline constexpr std::size_t screen_width = 128;
inline constexpr std::size_t screen_height = 128;
inline constexpr std::size_t led_count = 32;
inline constexpr std::size_t toggle_count = 2;
inline constexpr unsigned highest_intensity = 63;

/// The visible pixels of one screen, row by row from the top, each 5-6-5 red, green, blue.
using ScreenPixels = std::array<std::uint16_t, screen_width * screen_height>;

/// The panel but for its screens, at one moment.
struct PanelLamps {
  std::array<bool, led_count> button_leds{};
  std::array<bool, led_count> status_leds{};
  std::array<bool, toggle_count> toggles{};
  /// Brightness of the screens, 0 to highest_intensity.
  unsigned intensity = highest_intensity;
};

/// What a person in front of the panel sees at one moment.
struct PanelState : PanelLamps {
  std::array<ScreenPixels, screen_count> screens{};
};

} // namespace buttondriver::simulator
