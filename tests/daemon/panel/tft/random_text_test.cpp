// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/text.h"

#include "daemon/panel/library_calls.h"
#include "text_test.h"

#include <random>

namespace buttondriver::panel {
namespace {

/// The pixels of `count` characters as they are meant, set one by one, each character rendered anew; nothing where one
/// of them has no glyph. For blocks that are sent as a whole.
std::vector<std::uint16_t> meant_pixels(const std::string &text, int count, bool whole_line) {
  const RenderedGlyph cell = render_glyph('A');
  const int height = static_cast<int>(cell.bitmap().rows);
  const int width = whole_line ? 128 : count * static_cast<int>(cell.bitmap().width);
  std::vector<std::uint16_t> pixels(static_cast<std::size_t>(width * height), 0xE0E0);
  int pen_x = 0;
  int pen_y = 0;
  for (int i = 0; i < count; ++i) {
    const auto place = static_cast<std::size_t>(i);
    const RenderedGlyph glyph = render_glyph(static_cast<unsigned char>(place < text.size() ? text[place] : ' '));
    if (!glyph)
      return {};
    const FT_Bitmap &bitmap = glyph.bitmap();
    if (pen_x + static_cast<int>(bitmap.width) > width)
      break;
    for (int y = 0; y < static_cast<int>(bitmap.rows); ++y)
      for (int x = 0; x < static_cast<int>(bitmap.width); ++x) {
        const int bit = bitmap.buffer[y * bitmap.pitch + x / 8] >> (7 - x % 8) & 1;
        if (pen_x + x >= 0 && pen_x + x < 128 && pen_y + y >= 0 && pen_y + y < height)
          pixels[static_cast<std::size_t>((pen_y + y) * width + pen_x + x)] = bit == 1 ? 0xF800 : 0x07E0;
      }
    pen_x += glyph.advance_x;
    pen_y += glyph.advance_y;
  }
  return pixels;
}

class RandomTextTest : public TextTest {
protected:
  std::minstd_rand random{5};
  int number(int low, int high) { return std::uniform_int_distribution(low, high)(random); }

  void expectMeantPixels(const std::string &font) {
    ASSERT_EQ(font_load((PANEL_ROOT_FONTS "/" + font + ".pcf.gz").c_str()), 0) << font;
    for (int i = 0; i < 20; ++i) {
      const bool whole_line = number(0, 1) == 0;
      std::string text(static_cast<std::size_t>(number(1, 30)), '\0');
      for (char &character : text)
        character = static_cast<char>(number(0x20, 0xFF));
      const int count = number(1, 30);
      const std::vector<std::uint16_t> meant = meant_pixels(text, count, whole_line);
      EXPECT_EQ(tft_render_text(1, text, count, 0xF800, 0x07E0, whole_line), meant.empty() ? -1 : 0) << font;
      ASSERT_EQ(sentPixels(), meant) << font << ", text " << i;
    }
  }

  const library_calls::Restore restore;
};

const char *const fonts[] = {"4x6",  "5x7",  "5x8",  "6x9",  "6x10", "6x12",  "6x13", "7x13",
                             "7x14", "8x13", "8x16", "9x15", "9x18", "10x20", "12x24"};

TEST_F(RandomTextTest, has_the_pixels_of_its_characters_in_each_font_of_the_panel) {
  for (const char *font : fonts)
    expectMeantPixels(font);
}

TEST_F(RandomTextTest, has_them_also_where_characters_are_narrow_and_low_and_the_pen_goes_anywhere) {
  FT_ULong loaded = 0;
  library_calls::loaded_character = [&](FT_GlyphSlot slot, FT_ULong character, FT_Int32) {
    loaded = character;
    slot->advance = {static_cast<int>(character % 15 * 64) - 256, static_cast<int>(character % 4 * 64) - 64};
    return FT_Err_Ok;
  };
  library_calls::copied_glyph = [&](FT_Glyph glyph) {
    FT_Bitmap &bitmap = reinterpret_cast<FT_BitmapGlyphRec *>(glyph)->bitmap;
    bitmap.width -= static_cast<unsigned>(loaded) % 4;
    bitmap.rows -= static_cast<unsigned>(loaded) % 3;
  };
  for (const char *font : fonts)
    expectMeantPixels(font);
}

} // namespace
} // namespace buttondriver::panel
