// SPDX-License-Identifier: Apache-2.0
#include "model/expected/bdf_font.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace buttondriver::test {
namespace {

BdfFont font(const std::string &name) { return BdfFont::read(BUTTONDRIVER_FONT_SOURCES "/" + name + ".bdf"); }

std::vector<std::string> picture_of(const BdfGlyph &glyph) {
  std::vector<std::string> picture;
  for (const std::vector<bool> &row : glyph.rows) {
    picture.emplace_back();
    for (const bool bit : row)
      picture.back() += bit ? '#' : '.';
  }
  return picture;
}

TEST(BdfFontTest, gives_the_bits_of_a_glyph) {
  const BdfFont fonts = font("7x5");
  const BdfGlyph *glyph = fonts.glyph('M');
  ASSERT_NE(glyph, nullptr);
  EXPECT_EQ(picture_of(*glyph), (std::vector<std::string>{"##.........##", "#.#.......#.#", "#..#.....#..#",
                                                          "#...#...#...#", "#....###....#"}));
  EXPECT_EQ(glyph->advance, 13);
}

TEST(BdfFontTest, gives_the_default_character_for_one_that_it_does_not_have) {
  const BdfFont fonts = font("7x5");
  ASSERT_NE(fonts.glyph('?'), nullptr);
  EXPECT_EQ(fonts.glyph('?'), fonts.glyph('i'));
}

TEST(BdfFontTest, has_nothing_for_a_missing_character_without_a_default) {
  EXPECT_EQ(font("33x2").glyph('?'), nullptr);
}

TEST(BdfFontTest, throws_without_a_file) { EXPECT_THROW(font("none"), std::runtime_error); }

} // namespace
} // namespace buttondriver::test
