// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dimensions/panel_dimensions.h"
#include "panel/registers/registers.h"

#include <algorithm>
#include <cstdint>

/// The part of a screen that the next pixels go to, as values of the controller's window registers. Coordinates are
/// those of the screen, from 0, both ends included; they are in 64 bits, because clients may ask for anything.
/// Each edge is clamped on its own side only and then cut to 8 bits: the start of a window that lies to the right of
/// the screen, or below it, is not clamped, nor is the end of one that lies to the left or above.
namespace buttondriver::panel {

namespace pixel_window_detail {

/// End in the high byte, start in the low byte.
constexpr std::uint16_t edges(std::int64_t start, std::int64_t end) {
  return static_cast<std::uint16_t>((static_cast<std::uint64_t>(end) & 0xFF) << 8 |
                                    (static_cast<std::uint64_t>(start) & 0xFF));
}

} // namespace pixel_window_detail

/// Value of the horizontal window register.
constexpr std::uint16_t window_columns(std::int64_t first, std::int64_t last) {
  return pixel_window_detail::edges(std::max<std::int64_t>(first + first_column, first_column),
                                    std::min<std::int64_t>(last + first_column, last_column));
}

/// Value of the vertical window register.
constexpr std::uint16_t window_rows(std::int64_t first, std::int64_t last) {
  return pixel_window_detail::edges(std::max<std::int64_t>(first + first_row, first_row),
                                    std::min<std::int64_t>(last + first_row, last_row));
}

inline constexpr std::uint16_t all_columns = window_columns(0, dimensions::screen_width - 1);
inline constexpr std::uint16_t all_rows = window_rows(0, dimensions::screen_height - 1);
static_assert(all_columns == 0x8304 && all_rows == 0x8001);

} // namespace buttondriver::panel
