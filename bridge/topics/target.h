// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace buttondriver::bridge {

/// What a command changes on a panel, as far as the order of commands depends on it. A value; any thread.
///
/// The bridge does not know the panel's font. What is said of lines holds as long as texts fit the screen; lines and
/// parts that do not fit it with a font of 8 x 16 pixels may be drawn anywhere.
struct Target {
  enum class Kind : std::uint8_t {
    button,   ///< `place` is the button, or `everything`
    status,   ///< `place` is the status LED
    toggle,   ///< `place` is the indicator
    line,     ///< `place` is the text line of `screen`, the whole of it or a part; `everything`: a part, on any line
    area,     ///< some of `screen`: the pixels of `box`
    screen,   ///< all of `screen`: what was drawn on it before is not seen any more
    no_place, ///< nothing that stays
  };
  static constexpr std::int16_t everything = -1;

  /// Pixels of a screen; the default stands for those that are not known.
  struct Box {
    std::uint8_t left = 0;
    std::uint8_t top = 0;
    std::uint8_t width = 0;
    std::uint8_t height = 0;

    constexpr bool isKnown() const { return width > 0 && height > 0; }
    /// Both are known.
    constexpr bool meets(const Box &other) const {
      return left < other.left + other.width && other.left < left + width && top < other.top + other.height &&
             other.top < top + height;
    }
    /// `other` is known.
    constexpr bool contains(const Box &other) const {
      return left <= other.left && top <= other.top && left + width >= other.left + other.width &&
             top + height >= other.top + other.height;
    }
    friend constexpr bool operator==(const Box &one, const Box &other) {
      return one.left == other.left && one.top == other.top && one.width == other.width && one.height == other.height;
    }
  };

  /// Characters of a line; the default stands for those that are not known.
  struct Characters {
    std::uint8_t first = 0;
    std::uint8_t count = 0;

    constexpr bool isKnown() const { return count > 0; }
    /// `other` is known.
    constexpr bool contains(const Characters &other) const {
      return first <= other.first && first + count >= other.first + other.count;
    }
    friend constexpr bool operator==(const Characters &one, const Characters &other) {
      return one.first == other.first && one.count == other.count;
    }
  };

  Kind kind = Kind::no_place;
  std::int16_t screen = everything; ///< 0 to 2, or `everything`; only of line, area and screen
  std::int16_t place = everything;
  bool is_part = false;       ///< only of line: some of its characters
  Box box;                    ///< only of area
  Characters characters = {}; ///< only of a part; not known where they may stick out of their line

  /// Whether it matters which of the two is carried out last. True in case of doubt. The same the other way round.
  bool overlaps(const Target &other) const;
  /// Whether nothing of `earlier` is seen after this. False in case of doubt.
  bool covers(const Target &earlier) const;

  friend bool operator==(const Target &one, const Target &other) {
    return one.kind == other.kind && one.screen == other.screen && one.place == other.place &&
           one.is_part == other.is_part && one.box == other.box && one.characters == other.characters;
  }
  friend bool operator!=(const Target &one, const Target &other) { return !(one == other); }
};

} // namespace buttondriver::bridge
