// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/panel_state.h"

#include <QPoint>
#include <QRect>

#include <cstddef>

/// Where everything is in the picture of the panel, in pixels of the picture. All ids start at 0.
///
/// A "light" is the area that a lamp reaches: no pixel outside it changes when the lamp goes on or off. The lights of
/// two lamps never touch, and none touches a screen.
namespace buttondriver::simulator::layout {

inline constexpr int picture_width = 1520;
inline constexpr int picture_height = 984;
/// Each screen pixel is a square of this many picture pixels.
inline constexpr int screen_scale = 3;
/// Button LEDs below dimensions::button_count sit on a key; the ones from there on have no key.
inline constexpr std::size_t keys_below_each_screen = dimensions::button_count / dimensions::screen_count;

namespace detail {

inline constexpr int column_left = 64;
inline constexpr int column_pitch = 476;
inline constexpr int column_width = 440;
inline constexpr int key_columns = 4;

constexpr int number(std::size_t value) { return static_cast<int>(value); }

/// A square with an odd side, so that its centre is a pixel.
constexpr QRect around(QPoint centre, int reach) {
  return QRect(centre.x() - reach, centre.y() - reach, 2 * reach + 1, 2 * reach + 1);
}

constexpr QPoint status_centre(std::size_t id) { return QPoint(222 + number(id) * 37 + number(id / 8) * 12, 622); }
constexpr QPoint keyless_centre(std::size_t id) {
  return QPoint(641 + number(id - dimensions::button_count) * 34, 919);
}
constexpr QPoint toggle_centre(std::size_t id) { return QPoint(870 + number(id) * 66, 72); }

} // namespace detail

/// The metal plate; the rest of the picture is what it lies on.
inline constexpr QRect plate(24, 24, picture_width - 48, picture_height - 48);

/// The glass around a screen, the screen itself included.
constexpr QRect bezel(std::size_t id) {
  return QRect(detail::column_left + detail::number(id) * detail::column_pitch, 118, detail::column_width, 450);
}

/// The visible pixels of a screen.
constexpr QRect screen(std::size_t id) {
  return QRect(bezel(id).topLeft() + QPoint(28, 28),
               QSize(dimensions::screen_width, dimensions::screen_height) * screen_scale);
}

/// The square that shows one pixel of a screen.
constexpr QRect screen_pixel(std::size_t id, std::size_t x, std::size_t y) {
  return QRect(screen(id).topLeft() + QPoint(detail::number(x), detail::number(y)) * screen_scale,
               QSize(screen_scale, screen_scale));
}

/// The dark tray that holds the status lamps.
inline constexpr QRect status_tray(detail::column_left, 592, 1392, 74);

/// The cap of a key, `id` below dimensions::button_count: two rows of four below each screen.
constexpr QRect key(std::size_t id) {
  const int column = detail::number(id / keys_below_each_screen);
  const int place = detail::number(id % keys_below_each_screen);
  return QRect(detail::column_left + column * detail::column_pitch + 4 + place % detail::key_columns * 112,
               700 + place / detail::key_columns * 98, 96, 82);
}

/// The lamp of a button LED: a bar on its key, or, from dimensions::button_count on, a dot at the bottom of the plate.
constexpr QRect button_led(std::size_t id) {
  if (id < dimensions::button_count)
    return QRect(key(id).left() + 30, key(id).top() + 17, 36, 7);
  return detail::around(detail::keyless_centre(id), 4);
}

/// What a button LED lights up: the whole key with the gap around it, or the surroundings of the dot.
constexpr QRect button_light(std::size_t id) {
  return id < dimensions::button_count ? key(id).adjusted(-5, -5, 5, 5)
                                       : detail::around(detail::keyless_centre(id), 13);
}

constexpr QRect status_led(std::size_t id) { return detail::around(detail::status_centre(id), 7); }
constexpr QRect status_light(std::size_t id) { return detail::around(detail::status_centre(id), 18); }

constexpr QRect toggle(std::size_t id) { return detail::around(detail::toggle_centre(id), 11); }
constexpr QRect toggle_light(std::size_t id) { return detail::around(detail::toggle_centre(id), 27); }

/// The dark window that shows the intensity as a bar and as a number.
inline constexpr QRect intensity_window(1136, 52, 320, 42);

/// The segment of the bar that is lit when the intensity is at least `level`, 1 to dimensions::highest_intensity_level.
constexpr QRect intensity_segment(int level) {
  return QRect(intensity_window.left() + 14 + (level - 1) * 4, intensity_window.top() + 12, 3, 18);
}

} // namespace buttondriver::simulator::layout
