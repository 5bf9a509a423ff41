// SPDX-License-Identifier: Apache-2.0
#pragma once

/// How many of what the panel has, and how large: each number once, for all rooms. Ids count from 0, so the highest one
/// is the count less one.
namespace buttondriver::dimensions {

inline constexpr int screen_count = 3;
/// Names all screens where a screen id is asked for.
inline constexpr int all_screens = -1;
/// Pixels of a screen.
inline constexpr int screen_width = 128;
inline constexpr int screen_height = 128;
inline constexpr int screen_pixels = screen_width * screen_height;
/// Levels of the screens' intensity go from 0 to this one.
inline constexpr int highest_intensity_level = 63;

inline constexpr int button_count = 24;
/// Names all buttons where a button id is asked for.
inline constexpr int all_buttons = -1;
/// LEDs that a command can name, of the buttons as well as of the status indicators. Only `button_count` of them are
/// under a button.
inline constexpr int led_count = 32;
inline constexpr int toggle_indicator_count = 2;

/// A button image: one bit a pixel, rows of whole bytes.
inline constexpr int button_image_width = 40;
inline constexpr int button_image_height = 24;
inline constexpr int button_image_bytes = button_image_width / 8 * button_image_height;
/// Image ids below this one are shared by all connections.
inline constexpr int built_in_image_count = 23;

} // namespace buttondriver::dimensions
