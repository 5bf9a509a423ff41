// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "daemon/panel/panel_test.h"
#include "panel/formats/font.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

/// What the glyphs of the font 8x16 look like, read from its source by hand: "#" text, "." back.
namespace buttondriver::panel {

using Picture = std::vector<std::string>;

inline const Picture letter_a = {"........", "........", "...#....", "..###...", ".##.##..", "##...##.",
                                 "##...##.", "#######.", "##...##.", "##...##.", "##...##.", "##...##.",
                                 "........", "........", "........", "#......#"};
inline const Picture letter_b = {"########", "........", "######..", ".##..##.", ".##..##.", ".##..##.",
                                 ".#####..", ".##..##.", ".##..##.", ".##..##.", ".##..##.", "######..",
                                 "........", "........", "........", "########"};
inline const Picture letter_e_acute = {"....##..", "...##...", "..##....", "........", "........", ".#####..",
                                       "##...##.", "#######.", "##......", "##......", "##...##.", ".#####..",
                                       "........", "........", "........", "........"};
inline const Picture letter_w = {"############", "#..#....#..#", "#..#....#..#", "#..#....#..#",
                                 "#..#....#..#", "#..#....#..#", "#..#....#..#", "#..#....#..#",
                                 "#..#.....#.#", "#..#.....#.#", "#..#.....#.#", "#..#.....#.#",
                                 "#..#.....#.#", "#..#.....#.#", "#..#.....#.#", "############"};
inline const Picture blank(16, "........");

/// `rows` rows of pixels that no glyph covers.
inline Picture bare(std::size_t columns, std::size_t rows = 16) { return Picture(rows, std::string(columns, 'o')); }

/// A period fills the top left quarter of its cell's width and height only.
inline Picture period() {
  Picture picture = bare(8);
  const Picture glyph = {"#..#", ".##.", ".##.", "#..#"};
  for (std::size_t row = 0; row < glyph.size(); ++row)
    picture[row].replace(0, 4, glyph[row]);
  return picture;
}

inline Picture beside(const std::vector<Picture> &parts) {
  Picture whole(parts.front().size());
  for (const Picture &part : parts)
    for (std::size_t row = 0; row < whole.size(); ++row)
      whole[row] += part[row];
  return whole;
}

inline Picture times(std::size_t count, const Picture &part) { return beside(std::vector<Picture>(count, part)); }

/// Red on green: 0xF800 on 0x07E0, and 0xE0E0 where no glyph is.
inline constexpr std::uint32_t red = 0xFF0000;
inline constexpr std::uint32_t green = 0x00FF00;

inline Picture picture_of(const std::vector<std::uint16_t> &pixels, std::size_t width) {
  Picture picture;
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    if (i % width == 0)
      picture.emplace_back();
    picture.back() += pixels[i] == 0xF800 ? '#' : pixels[i] == 0x07E0 ? '.' : pixels[i] == 0xE0E0 ? 'o' : '?';
  }
  return picture;
}

/// The panel layer with the font 8x16 loaded.
class TextTest : public PanelTest {
protected:
  TextTest() { load("8x16"); }

  static void load(const std::string &name) {
    if (font_load((BUTTONDRIVER_TEST_FONTS "/" + name + ".pcf.gz").c_str()) != 0)
      throw std::runtime_error("no font " + name);
  }

  /// The pixels sent since the device was last asked; nothing when there was not exactly one run of several.
  std::vector<std::uint16_t> sentPixels() {
    std::vector<std::vector<std::uint16_t>> runs;
    for (const auto &transfer : device.take())
      if (transfer.record.count > 1)
        runs.push_back(transfer.words);
    return runs.size() == 1 ? runs.front() : std::vector<std::uint16_t>();
  }
};

} // namespace buttondriver::panel
