// SPDX-License-Identifier: Apache-2.0
#pragma once

/// How many of what the panel has, and how large: each number once, for all rooms. Ids count from 0, so the highest one
/// is the count less one.
namespace buttondriver::dimensions {

/// Screens of the panel.
inline constexpr int screen_count = 3;
/// Names all screens where a screen id is asked for.
inline constexpr int all_screens = -1;
/// Pixels of a screen, from left to right.
inline constexpr int screen_width = 128;
/// From top to bottom.
inline constexpr int screen_height = 128;
/// All of them.
inline constexpr int screen_pixels = screen_width * screen_height;
/// Levels of the screens' intensity go from 0 to this one.
inline constexpr int highest_intensity_level = 63;

/// Buttons of the panel, each with an LED under it.
inline constexpr int button_count = 24;
/// Names all buttons where a button id is asked for.
inline constexpr int all_buttons = -1;
/// LEDs that a command can name, of the buttons as well as of the status indicators. Only `button_count` of them are
/// under a button.
inline constexpr int led_count = 32;
/// Toggle indicators of the panel.
inline constexpr int toggle_indicator_count = 2;

/// Pixels of a button image from left to right.
inline constexpr int button_image_width = 40;
/// From top to bottom.
inline constexpr int button_image_height = 24;
/// All of it: one bit a pixel, rows of whole bytes.
inline constexpr int button_image_bytes = button_image_width / 8 * button_image_height;
/// Image ids below this one are shared by all connections.
inline constexpr int built_in_image_count = 23;

} // namespace buttondriver::dimensions
