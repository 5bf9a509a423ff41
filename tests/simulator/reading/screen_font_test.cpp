// SPDX-License-Identifier: Apache-2.0
#include "simulator/reading/screen_font.h"

#include "drawn_screen.h"
#include "panel/formats/font.h"

#include <gmock/gmock.h>

namespace buttondriver::simulator {
namespace {

using testing::ElementsAre;

TEST(ScreenFontTest, has_the_size_of_the_cells_and_what_lies_in_them) {
  const FontInUse in_use("7x5");
  const ScreenFont font = ScreenFont::inUse();
  EXPECT_EQ(font.fault(), "");
  EXPECT_EQ(font.cellWidth(), 7);
  EXPECT_EQ(font.cellHeight(), 5);
  ASSERT_TRUE(font.glyph('A'));
  EXPECT_EQ(font.glyph('A')->width, 7);
  EXPECT_THAT(font.glyph('A')->rows, ElementsAre(0x38000000U, 0x44000000U, 0xFE000000U, 0x82000000U, 0x82000000U));
  EXPECT_EQ(font.glyph('i')->width, 2);
  EXPECT_THAT(font.glyph('i')->rows, ElementsAre(0xC0000000U, 0x40000000U, 0x80000000U));
  EXPECT_EQ(font.glyph('M')->width, 7) << "it is 13 pixels wide";
  EXPECT_EQ(font.glyph('g')->rows.size(), 5U) << "it has 7 rows";
}

TEST(ScreenFontTest, has_only_characters_of_the_font_that_can_be_drawn) {
  const FontInUse in_use("7x5");
  const ScreenFont font = ScreenFont::inUse();
  EXPECT_TRUE(font.glyph(0xFF));
  EXPECT_FALSE(font.glyph('C')) << "the font draws its default character for it";
  EXPECT_FALSE(font.glyph('X')) << "its rows have eight bytes";
  EXPECT_FALSE(font.glyph(0));
}

TEST(ScreenFontTest, tells_why_texts_cannot_be_read) {
  struct Row {
    const char *font;
    const char *fault;
  };
  const Row rows[] = {
      {"8x16-in-two-bytes", "the font is none that texts can be drawn with"},
      {"33x2", "the font is none that texts can be drawn with"},
  };
  for (const Row &row : rows) {
    const FontInUse in_use(row.font);
    const ScreenFont font = ScreenFont::inUse();
    EXPECT_EQ(font.fault(), row.fault) << row.font;
    EXPECT_EQ(font.cellWidth(), 0) << row.font;
  }
  EXPECT_EQ(ScreenFont::inUse().fault(), "no font is loaded");
  EXPECT_EQ(ScreenFont::missing("nobody knows").fault(), "nobody knows");
}

} // namespace
} // namespace buttondriver::simulator
