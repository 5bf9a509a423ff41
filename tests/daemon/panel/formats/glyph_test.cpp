// SPDX-License-Identifier: Apache-2.0
#include "daemon/panel/library_calls.h"
#include "daemon/panel/tft/text_test.h"
#include "panel/formats/font.h"
#include "support/temporary_folder.h"

#include <zlib.h>

namespace buttondriver::panel {
namespace {

class GlyphTest : public TextTest {
protected:
  const test::TemporaryFolder folder;
  const library_calls::Restore restore;
};

std::string glyph_source(char character, unsigned width, unsigned height) {
  const std::string size = std::to_string(width);
  std::string text = std::string("STARTCHAR ") + character + "\nENCODING " + std::to_string(int{character}) +
                     "\nSWIDTH 500 0\nDWIDTH " + size + " 0\nBBX " + size + ' ' + std::to_string(height) +
                     " 0 0\nBITMAP\n";
  for (unsigned row = 0; row < height; ++row)
    text += std::string((width + 7) / 8 * 2, 'F') + '\n';
  return text + "ENDCHAR\n";
}

/// A font that is not packed, with an "A" of 8 x 16 pixels and another "B".
std::string font_source(unsigned width, unsigned height) {
  return "STARTFONT 2.1\nFONT test\nSIZE 16 72 72\nFONTBOUNDINGBOX 8 16 0 0\nSTARTPROPERTIES 4\nFONT_ASCENT 16\n"
         "FONT_DESCENT 0\nCHARSET_REGISTRY \"ISO8859\"\nCHARSET_ENCODING \"1\"\nENDPROPERTIES\nCHARS 2\n" +
         glyph_source('A', 8, 16) + glyph_source('B', width, height) + "ENDFONT\n";
}

TEST_F(GlyphTest, of_more_than_4096_pixels_a_side_is_not_loaded) {
  struct Row {
    unsigned width;
    unsigned height;
    bool is_loaded;
  };
  for (const Row &row : {Row{4096, 1, true}, Row{4097, 1, false}, Row{1, 4096, true}, Row{1, 4097, false}}) {
    SCOPED_TRACE(testing::Message() << row.width << " x " << row.height);
    EXPECT_EQ(font_load(folder.write("font", font_source(row.width, row.height)).c_str()), 0);
    EXPECT_TRUE(render_glyph('A'));
    const RenderedGlyph glyph = render_glyph('B');
    ASSERT_EQ(static_cast<bool>(glyph), row.is_loaded);
    if (!row.is_loaded)
      continue;
    EXPECT_EQ(glyph.bitmap().width, row.width);
    EXPECT_EQ(glyph.bitmap().rows, row.height);
  }
}

TEST_F(GlyphTest, is_empty_where_its_pixels_cannot_be_loaded) {
  library_calls::loaded_character = [](FT_GlyphSlot, FT_ULong, FT_Int32 flags) {
    return (flags & FT_LOAD_RENDER) != 0 ? FT_Err_Invalid_Stream_Read : FT_Err_Ok;
  };
  EXPECT_FALSE(render_glyph('A'));
  library_calls::loaded_character = nullptr;
  EXPECT_TRUE(render_glyph('A'));
}

TEST_F(GlyphTest, is_empty_where_it_cannot_be_copied) {
  library_calls::copying_error = FT_Err_Out_Of_Memory;
  EXPECT_FALSE(render_glyph('A'));
}

TEST_F(GlyphTest, is_empty_where_it_is_no_bitmap) {
  library_calls::copied_glyph = [](FT_Glyph glyph) { glyph->format = FT_GLYPH_FORMAT_OUTLINE; };
  EXPECT_FALSE(render_glyph('A'));
}

TEST_F(GlyphTest, is_empty_where_it_cannot_be_converted) {
  library_calls::conversion_error = FT_Err_Cannot_Render_Glyph;
  EXPECT_FALSE(render_glyph('A'));
}

/// Counts the characters that are loaded, each by its size and by its pixels, and lets `failing` fail.
struct LoadedCharacters {
  explicit LoadedCharacters(unsigned char failing = 0) {
    library_calls::loaded_character = [this, failing](FT_GlyphSlot, FT_ULong character, FT_Int32) {
      ++count;
      return character == failing ? FT_Err_Out_Of_Memory : FT_Err_Ok;
    };
  }
  int count = 0;
};

TEST_F(GlyphTest, of_text_is_rendered_once_for_each_font) {
  const LoadedCharacters loaded;
  const TextGlyph *const first = text_glyph('A');
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->width, 8U);
  EXPECT_EQ(first->rows, 16U);
  EXPECT_EQ(first->advance_x, 8);
  EXPECT_EQ(first->advance_y, 0);
  EXPECT_TRUE(first->is_drawable);
  EXPECT_EQ(loaded.count, 2);
  EXPECT_EQ(text_glyph('A'), first);
  EXPECT_EQ(loaded.count, 2);
  EXPECT_EQ(font_load(BUTTONDRIVER_TEST_FONTS "/5x4.pcf.gz"), 0);
  ASSERT_NE(text_glyph('A'), nullptr);
  EXPECT_EQ(text_glyph('A')->width, 5U);
  EXPECT_EQ(loaded.count, 4);
  output_of([] { font_load("/a font that is missing"); });
  EXPECT_NE(text_glyph('A'), nullptr);
  EXPECT_EQ(loaded.count, 4);
}

TEST_F(GlyphTest, of_text_is_gone_with_its_font) {
  EXPECT_NE(text_glyph('A'), nullptr);
  output_of([&] { font_load(folder.write("no-font", "this is no font").c_str()); });
  EXPECT_EQ(text_glyph('A'), nullptr);
}

TEST_F(GlyphTest, of_text_that_failed_is_tried_again) {
  LoadedCharacters loaded('A');
  EXPECT_EQ(text_glyph('A'), nullptr);
  EXPECT_EQ(text_glyph('A'), nullptr);
  EXPECT_EQ(loaded.count, 2);
  library_calls::loaded_character = nullptr;
  EXPECT_NE(text_glyph('A'), nullptr);
}

TEST_F(GlyphTest, of_text_with_rows_of_another_length_is_known_and_cannot_be_drawn) {
  EXPECT_EQ(font_load(BUTTONDRIVER_TEST_FONTS "/8x16-in-two-bytes.pcf.gz"), 0);
  const LoadedCharacters loaded;
  for (int i = 0; i < 2; ++i) {
    const TextGlyph *const glyph = text_glyph('A');
    ASSERT_NE(glyph, nullptr);
    EXPECT_EQ(glyph->width, 8U);
    EXPECT_EQ(glyph->rows, 16U);
    EXPECT_FALSE(glyph->is_drawable);
  }
  EXPECT_EQ(loaded.count, 2);
}

TEST_F(GlyphTest, of_text_for_which_there_is_no_room_is_rendered_each_time) {
  // 32 columns are four bytes a row. "A" is 16 rows high, so two of 4096 are one too many.
  const std::string source = "STARTFONT 2.1\nFONT test\nSIZE 16 72 72\nFONTBOUNDINGBOX 32 16 0 0\nSTARTPROPERTIES 4\n"
                             "FONT_ASCENT 16\nFONT_DESCENT 0\nCHARSET_REGISTRY \"ISO8859\"\nCHARSET_ENCODING \"1\"\n"
                             "ENDPROPERTIES\nCHARS 4\n" +
                             glyph_source('A', 32, 16) + glyph_source('B', 32, 4096) + glyph_source('C', 32, 4096) +
                             glyph_source('D', 32, 4095) + "ENDFONT\n";
  EXPECT_EQ(font_load(folder.write("font", source).c_str()), 0);
  const LoadedCharacters loaded;
  for (const char character : {'A', 'B', 'C', 'D', 'C', 'D', 'A', 'B'}) {
    const TextGlyph *const glyph = text_glyph(static_cast<unsigned char>(character));
    ASSERT_NE(glyph, nullptr) << character;
    ASSERT_TRUE(glyph->is_drawable);
    EXPECT_EQ(std::vector(glyph->bits, glyph->bits + glyph->rows * std::size_t{4}),
              std::vector<unsigned char>(glyph->rows * std::size_t{4}, 0xFF))
        << character;
    EXPECT_EQ(glyph->rows, character == 'A' ? 16U : character == 'D' ? 4095U : 4096U);
  }
  EXPECT_EQ(loaded.count, 2 * 6) << "A and B once, C and D twice";
}

TEST_F(GlyphTest, font_without_fixed_sizes_fails_quietly) {
  library_calls::made_face = [](FT_Face face) { face->num_fixed_sizes = 0; };
  int result = 0;
  EXPECT_EQ(output_of([&] { result = font_load(BUTTONDRIVER_TEST_FONTS "/5x4.pcf.gz"); }), "");
  EXPECT_EQ(result, -1);
}

TEST_F(GlyphTest, font_that_cannot_be_unpacked_at_once_is_used_as_it_is) {
  library_calls::next_unpacking_error = Z_MEM_ERROR;
  EXPECT_EQ(font_load(BUTTONDRIVER_TEST_FONTS "/5x4.pcf.gz"), 0);
  EXPECT_EQ(library_calls::next_unpacking_error, 0) << "it was unpacked";
  const RenderedGlyph glyph = render_glyph('A');
  ASSERT_TRUE(glyph);
  EXPECT_EQ(glyph.bitmap().width, 5U);
}

} // namespace
} // namespace buttondriver::panel
