// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/text_block.h"

#include "daemon/panel/panel_test.h"

#include <random>
#include <vector>

namespace buttondriver::panel {
namespace {

constexpr std::uint16_t text_pixel = 0x1234;
constexpr std::uint16_t back_pixel = 0xA5C3;
constexpr std::uint16_t bare_pixel = 0x7777;

using Pixels = std::vector<std::uint16_t>;

/// A block as it is meant: all its pixels, of which glyphs are drawn on those within 128 x 128, one by one.
class MeantBlock {
public:
  MeantBlock(int width, int height) : _width(width), _height(height), _pixels(index(0, height), bare_pixel) {}

  void draw(const TextGlyph &glyph, int x, int y) {
    for (int row = 0; row < static_cast<int>(glyph.rows); ++row)
      for (int column = 0; column < static_cast<int>(glyph.width) && column < 32; ++column) {
        const bool is_inside =
            x + column >= 0 && x + column < std::min(_width, 128) && y + row >= 0 && y + row < std::min(_height, 128);
        const int bit = glyph.bits[row * 4 + column / 8] >> (7 - column % 8) & 1;
        if (is_inside)
          _pixels[index(x + column, y + row)] = bit == 1 ? text_pixel : back_pixel;
      }
  }

  Pixels sent() const { return Pixels(_pixels.begin(), _pixels.begin() + (_width * _height & 0xFFFF)); }

private:
  std::size_t index(int x, int y) const { return static_cast<std::size_t>(y * _width + x); }

  int _width;
  int _height;
  Pixels _pixels;
};

class TextBlockTest : public PanelTest {
protected:
  Pixels sent(TextBlock &block) {
    device.take();
    block.send(1);
    const auto transfers = device.take();
    return transfers.size() == 1 && transfers[0].record.count > 1 ? transfers[0].words : Pixels();
  }

  std::minstd_rand random{3};
  int number(int low, int high) { return std::uniform_int_distribution(low, high)(random); }

  /// Its bits last until the next one is made.
  TextGlyph randomGlyph(int most_columns, int most_rows) {
    TextGlyph glyph;
    glyph.width = static_cast<unsigned>(number(0, most_columns));
    glyph.rows = static_cast<unsigned>(number(0, most_rows));
    _bits.resize(glyph.rows * std::size_t{4});
    for (unsigned char &byte : _bits)
      byte = static_cast<unsigned char>(random() >> 8);
    glyph.is_drawable = true;
    glyph.bits = _bits.data();
    return glyph;
  }

private:
  std::vector<unsigned char> _bits;
};

struct Row {
  const char *what;
  int most_block_width;
  int most_block_height;
  int most_columns;
  int most_rows;
  int blocks;
};

TEST_F(TextBlockTest, has_the_pixels_of_its_glyphs_wherever_they_are) {
  // Blocks of more than 65535 pixels are sent in part.
  const Row rows[] = {{"line", 128, 24, 12, 24, 1000},
                      {"small block and large glyphs", 40, 40, 40, 60, 3000},
                      {"wider than the screen", 400, 30, 35, 40, 300},
                      {"higher than the screen", 30, 300, 35, 300, 300},
                      {"more than can be sent", 3000, 200, 40, 150, 60},
                      {"few rows more than can be sent", 1200, 57, 40, 60, 60}};
  for (const Row &row : rows)
    for (int i = 0; i < row.blocks; ++i) {
      const int width = number(row.most_block_width / 2, row.most_block_width);
      const int height = number(row.most_block_height / 2, row.most_block_height);
      MeantBlock meant(width, height);
      TextBlock block(width, height, text_pixel, back_pixel);
      ASSERT_TRUE(block.fill(bare_pixel));
      for (int drawn = 0; drawn < 8; ++drawn) {
        const TextGlyph glyph = randomGlyph(row.most_columns, row.most_rows);
        const int x = number(-40, std::min(width, 128) + 2);
        const int y = number(0, 1) == 0 ? 0 : number(-row.most_rows - 1, height + 1);
        meant.draw(glyph, x, y);
        block.draw(glyph, x, y);
      }
      ASSERT_EQ(sent(block), meant.sent()) << row.what << ": " << width << " x " << height << ", block " << i;
    }
}

TEST_F(TextBlockTest, has_the_pixels_of_a_glyph_at_each_of_its_edges) {
  constexpr int width = 37;
  constexpr int height = 9;
  for (int columns = 1; columns <= 33; ++columns)
    for (int x = -columns - 1; x <= width + 1; ++x)
      for (const int y : {-3, -1, 0, 1, 6, 8, 9}) {
        TextGlyph glyph = randomGlyph(0, 0);
        do
          glyph = randomGlyph(0, 5);
        while (glyph.rows == 0);
        glyph.width = static_cast<unsigned>(columns);
        MeantBlock meant(width, height);
        TextBlock block(width, height, text_pixel, back_pixel);
        ASSERT_TRUE(block.fill(bare_pixel));
        meant.draw(glyph, x, y);
        block.draw(glyph, x, y);
        ASSERT_EQ(sent(block), meant.sent()) << columns << " columns at " << x << ", " << y;
      }
}

TEST_F(TextBlockTest, begins_bare_whatever_was_there_before) {
  for (const int count : {2, 63, 64, 65, 4096, 16384, 65535}) {
    TextBlock older(257, 255, text_pixel, back_pixel);
    ASSERT_TRUE(older.fill(0xDEAD));
    TextBlock block(count, 1, text_pixel, back_pixel);
    ASSERT_TRUE(block.fill(bare_pixel));
    EXPECT_EQ(sent(block), Pixels(static_cast<std::size_t>(count), bare_pixel)) << count;
  }
}

TEST_F(TextBlockTest, of_67108864_pixels_is_the_largest) {
  EXPECT_TRUE(TextBlock(67108864, 1, text_pixel, back_pixel).fill(bare_pixel));
  EXPECT_TRUE(TextBlock(8192, 8192, text_pixel, back_pixel).fill(bare_pixel));
  EXPECT_FALSE(TextBlock(67108865, 1, text_pixel, back_pixel).fill(bare_pixel));
  EXPECT_FALSE(TextBlock(8193, 8192, text_pixel, back_pixel).fill(bare_pixel));
  EXPECT_FALSE(TextBlock(-1, 1, text_pixel, back_pixel).fill(bare_pixel));
  EXPECT_TRUE(TextBlock(67108865, 0, text_pixel, back_pixel).fill(bare_pixel));
}

} // namespace
} // namespace buttondriver::panel
