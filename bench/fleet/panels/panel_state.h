// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"
#include "dimensions/panel_dimensions.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace buttondriver::fleet {

/// What a panel shows after the messages that it got, as far as it is lamps and whole lines of text. A new one is that
/// of a panel that was just switched on.
struct PanelState {
  static constexpr std::size_t line_count = 8;

  struct Line {
    std::string text;
    bool is_inverse = false; ///< black on white
    bool operator==(const Line &other) const { return text == other.text && is_inverse == other.is_inverse; }
  };
  using Screen = std::array<Line, line_count>;

  /// 0: off; 1: on; below 0: blinking, each phase so many milliseconds.
  std::array<std::int32_t, dimensions::button_count> buttons{};
  std::array<bool, dimensions::led_count> status{};
  std::array<bool, dimensions::toggle_indicator_count> toggles{};
  std::array<Screen, dimensions::screen_count> screens{};

  /// Carries out a message, without the length before it. What is not about lamps, lines or blackout, or has a number
  /// that the panel has not, changes nothing.
  void take(ByteView message);

  bool operator==(const PanelState &other) const {
    return buttons == other.buttons && status == other.status && toggles == other.toggles && screens == other.screens;
  }
};

} // namespace buttondriver::fleet
