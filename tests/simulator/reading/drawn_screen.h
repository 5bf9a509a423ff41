// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/panel_state.h"
#include "simulator/reading/screen_font.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace buttondriver::simulator {

/// A font of the tests, loaded for as long as this lives.
class FontInUse {
public:
  explicit FontInUse(const std::string &name);
  ~FontInUse();
  FontInUse(const FontInUse &) = delete;
  FontInUse &operator=(const FontInUse &) = delete;
};

/// A screen that is drawn by hand: a letter for each pixel, with its colour.
class DrawnScreen {
public:
  using Colours = std::map<char, std::uint16_t>;
  using Rows = std::vector<std::string>;

  /// Draws `rows` with their upper left corner there; a blank leaves a pixel as it is.
  void draw(int left, int top, const Rows &rows, const Colours &colours = {{'#', 0xFFFF}, {'.', 0}, {'+', 0}});

  const ScreenPixels &pixels() const { return _pixels; }

private:
  ScreenPixels _pixels{};
};

/// Characters of the font 7x5, as its source shows them. A plus is where a glyph that is smaller than its cell ends.
namespace glyphs_7x5 {
// clang-format off
inline const DrawnScreen::Rows upper_a{"..###..",
                                       ".#...#.",
                                       "#######",
                                       "#.....#",
                                       "#.....#"};
inline const DrawnScreen::Rows upper_b{"######.",
                                       "#.....#",
                                       "######.",
                                       "#.....#",
                                       "#######"};
inline const DrawnScreen::Rows y_with_dots{".#...#.",
                                           ".......",
                                           "#.....#",
                                           ".#...#.",
                                           "..###.."};
inline const DrawnScreen::Rows lower_i{"##+++++",
                                       ".#+++++",
                                       "#.+++++",
                                       "+++++++",
                                       "+++++++"};
// Of these, only the part that lies in the cell.
inline const DrawnScreen::Rows upper_m{"##.....",
                                       "#.#....",
                                       "#..#...",
                                       "#...#..",
                                       "#....##"};
inline const DrawnScreen::Rows lower_g{".####++",
                                       "#...#++",
                                       "#...#++",
                                       ".####++",
                                       "....#++"};
// clang-format on
} // namespace glyphs_7x5

} // namespace buttondriver::simulator
