// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"
#include "simulator/device/panel_state.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace buttondriver::simulator {

/// What clients have sent to the screens, as text: read from their messages, not from the pixels as by read_lines(). A
/// line holds what was last written to it, also where the font leaves no room for it or a picture has been drawn over
/// it since; a cleared screen has no lines.
class TextMemory {
public:
  /// Lines and characters from here on cannot be on a screen, whatever the font, and are not kept.
  static constexpr std::int32_t line_limit = dimensions::screen_height;
  static constexpr std::size_t column_limit = dimensions::screen_width;

  /// The lines of one screen from the topmost to the lowest that was written, Latin-1; empty ones were not.
  using Lines = std::vector<std::string>;

  /// Takes one message in network order, of any type and any length.
  void follow(ByteView message);
  void clear();

  const std::array<Lines, dimensions::screen_count> &screens() const { return _screens; }
  /// Grows with every change of screens().
  std::uint64_t revision() const { return _revision; }

private:
  template <class Change> void change(std::int32_t screen_id, Change change);

  std::array<Lines, dimensions::screen_count> _screens;
  std::uint64_t _revision = 0;
};

} // namespace buttondriver::simulator
