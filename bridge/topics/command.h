// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <cstdint>

namespace buttondriver::bridge {

/// What a command changes on a panel, as far as the order of commands depends on it.
struct Target {
  enum class Kind : std::uint8_t {
    button,   ///< `place` is the button, or `everything`
    status,   ///< `place` is the status LED
    toggle,   ///< `place` is the indicator
    line,     ///< `place` is the text line of `screen`, the whole of it or a part
    area,     ///< some of `screen`
    screen,   ///< all of `screen`: what was drawn on it before is not seen any more
    no_place, ///< nothing that stays
  };
  static constexpr std::int16_t everything = -1;

  Kind kind = Kind::no_place;
  std::int16_t screen = everything; ///< 0 to 2, or `everything`; only of line, area and screen
  std::int16_t place = everything;

  /// Whether it matters which of the two is carried out last. True in case of doubt.
  bool overlaps(const Target &other) const;
  /// Whether nothing of `earlier` is seen after this. False in case of doubt.
  bool covers(const Target &earlier) const;
};

/// One command for a panel, made of a topic and its payload.
struct Command {
  QByteArray frame; ///< what goes to the panel: the length, then the message
  Target target;
  /// Of several commands of the same topic that wait for a panel, only the last one has to arrive: those of lamps and
  /// of whole lines.
  bool newest_wins = false;
};

} // namespace buttondriver::bridge
