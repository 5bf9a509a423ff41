// SPDX-License-Identifier: Apache-2.0
#include "simulator/reading/text_reader.h"

#include "drawn_screen.h"

#include <gmock/gmock.h>

namespace buttondriver::simulator {
namespace {

using namespace glyphs_7x5;
using testing::ElementsAre;
using testing::IsEmpty;

/// Screens in cells of 7 x 5 pixels: 18 columns and 25 lines, with two and three pixels left over.
class TextReaderTest : public testing::Test {
protected:
  static constexpr int last_column = 17;
  static constexpr int last_line = 24;

  void draw(int column, int line, const DrawnScreen::Rows &glyph) { screen.draw(7 * column, 5 * line, glyph); }
  void draw(int column, int line, const DrawnScreen::Rows &glyph, const DrawnScreen::Colours &colours) {
    screen.draw(7 * column, 5 * line, glyph, colours);
  }
  std::vector<std::u16string> read(const std::vector<std::string> &sent = {}) const {
    return read_lines(ScreenFont::inUse(), screen.pixels(), sent);
  }

  const FontInUse in_use{"7x5"};
  DrawnScreen screen;
};

TEST_F(TextReaderTest, a_black_screen_has_no_lines_whatever_was_sent) {
  EXPECT_THAT(read(), IsEmpty());
  EXPECT_THAT(read({"AB", "A"}), IsEmpty());
}

TEST_F(TextReaderTest, lines_are_read_to_the_lowest_and_without_blanks_at_their_ends) {
  draw(1, 1, upper_a);
  draw(3, 1, y_with_dots);
  draw(last_column, last_line, upper_b);
  const auto lines = read();
  ASSERT_EQ(lines.size(), 25U);
  EXPECT_EQ(lines[0], u"");
  EXPECT_EQ(lines[1], u" A \u00ff");
  EXPECT_EQ(lines[24], std::u16string(17, u' ') + u'B');
}

TEST_F(TextReaderTest, any_two_colours_show_a_character) {
  draw(0, 0, upper_a, {{'#', 0x0000}, {'.', 0xFFFF}});
  draw(1, 0, upper_a, {{'#', 0xF800}, {'.', 0x001F}});
  draw(2, 0, upper_a, {{'#', 0x0001}, {'.', 0x0000}});
  EXPECT_THAT(read(), ElementsAre(u"AAA"));
}

TEST_F(TextReaderTest, a_cell_of_one_colour_is_a_blank) {
  draw(0, 0, upper_a, {{'#', 0xF800}, {'.', 0xF800}});
  draw(1, 0, upper_b);
  EXPECT_THAT(read({"AB"}), ElementsAre(u" B"));
}

TEST_F(TextReaderTest, what_is_no_character_is_marked) {
  draw(0, 0, upper_a, {{'#', 0xFFFF}, {'.', 0}});
  screen.draw(6, 4, {"."}); // of the lower right corner of the first cell
  draw(1, 0, upper_b);
  screen.draw(10, 2, {"o"}, {{'o', 0xF800}}); // a third colour in the second
  draw(2, 0, upper_a);
  EXPECT_THAT(read({"ABA"}), ElementsAre(u"\uFFFD\uFFFDA"));
}

TEST_F(TextReaderTest, characters_that_are_off_the_grid_are_marked) {
  screen.draw(3, 0, upper_a);
  screen.draw(0, 11, upper_b);
  EXPECT_THAT(read({"A", "", "B"}), ElementsAre(u"\uFFFD\uFFFD", u"", u"\uFFFD", u"\uFFFD"));
}

TEST_F(TextReaderTest, cells_that_the_edge_of_the_screen_cuts_off_are_not_read) {
  screen.draw(126, 0, {"##", "##", "##", "##", "##"});
  screen.draw(0, 125, {"#######", "#######", "#######"});
  EXPECT_THAT(read(), IsEmpty());
}

TEST_F(TextReaderTest, around_a_glyph_that_is_smaller_than_its_cell_is_the_low_byte_of_the_background_twice) {
  draw(0, 0, lower_i, {{'#', 0xFFFF}, {'.', 0x07E1}, {'+', 0xE1E1}});
  draw(1, 0, lower_i, {{'#', 0xFFFF}, {'.', 0x07E1}, {'+', 0x07E1}});
  draw(2, 0, lower_i, {{'#', 0}, {'.', 0xFFFF}, {'+', 0xFFFF}});
  EXPECT_THAT(read({"iii"}), ElementsAre(u"i\uFFFDi"));
}

TEST_F(TextReaderTest, of_a_glyph_that_is_larger_than_its_cell_counts_what_lies_in_it) {
  draw(0, 0, upper_m);
  draw(1, 0, lower_g);
  EXPECT_THAT(read(), ElementsAre(u"Mg"));
}

TEST_F(TextReaderTest, a_character_that_the_font_has_not_is_the_one_that_stands_for_it) {
  draw(0, 0, lower_i);
  EXPECT_THAT(read({"C"}), ElementsAre(u"i"));
}

TEST(TextReaderWithSameGlyphsTest, characters_that_look_the_same_are_told_apart_by_what_was_sent) {
  const FontInUse in_use("twins");
  DrawnScreen screen;
  screen.draw(0, 0, {"..#..", ".#.#.", "#####", "#...#"});
  screen.draw(10, 0, {"#####", "#####", "#####", "#####"});
  screen.draw(15, 0, {"..#..", ".#.#.", "#####", "#...#"});
  screen.draw(20, 0, {"#####", "#...#", "#...#", "#####"}); // what stands for characters that are not there
  struct Row {
    std::string sent;
    std::u16string line;
  };
  const Row rows[] = {
      {"", u"A  A\uFFFD"},
      {"A  AB", u"A  A\uFFFD"},
      {"\xC1  A", u"\u00c1  A\uFFFD"},
      {"\x02\xA0\xA0\xC1", u"\u0002\u00a0\u00a0\u00c1\uFFFD"},
      // Not what these pixels can be, one that is all of one colour among them.
      {" A\xDB ", u"A  A\uFFFD"},
  };
  for (const Row &row : rows)
    EXPECT_THAT(read_lines(ScreenFont::inUse(), screen.pixels(), {row.sent}), ElementsAre(row.line)) << row.sent;
}

TEST(TextReaderWithoutBlankTest, a_blank_needs_no_glyph) {
  const FontInUse in_use("without-a");
  ASSERT_FALSE(ScreenFont::inUse().glyph(' '));
  EXPECT_THAT(read_lines(ScreenFont::inUse(), ScreenPixels{}, {}), IsEmpty());
}

TEST(TextReaderWithoutFontTest, nothing_is_read) {
  DrawnScreen screen;
  screen.draw(0, 0, upper_a);
  EXPECT_THAT(read_lines(ScreenFont::missing("no font"), screen.pixels(), {"A"}), IsEmpty());
}

} // namespace
} // namespace buttondriver::simulator
