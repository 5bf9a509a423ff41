// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/text.h"

#include "panel/panel_lib.h"
#include "text_test.h"

namespace buttondriver::panel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RenderTextTest : public TextTest {};

TEST_F(RenderTextTest, sends_the_block_to_the_open_window) {
  EXPECT_EQ(tft_render_text(4, "AB", 2, 0xF800, 0x07E0, false), 0);
  EXPECT_THAT(device.takeLines(), ElementsAre("w 0a09 256 ..."));
}

TEST_F(RenderTextTest, repeats_the_low_byte_of_the_back_pixel) {
  EXPECT_EQ(tft_render_text(1, "", 0, 0xF800, 0x1234, true), 0);
  EXPECT_THAT(device.takeLines(), ElementsAre("w 0a03 2048 3434 * 2048"));
}

TEST_F(RenderTextTest, whole_line_draws_no_more_than_count_characters) {
  EXPECT_EQ(tft_render_text(1, "ABAB", 2, 0xF800, 0x07E0, true), 0);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({letter_a, letter_b, bare(112)}));
}

TEST_F(RenderTextTest, whole_line_draws_no_character_for_a_negative_count) {
  EXPECT_EQ(tft_render_text(1, "ABAB", -1, 0xF800, 0x07E0, true), 0);
  EXPECT_THAT(device.takeLines(), ElementsAre("w 0a03 2048 e0e0 * 2048"));
}

TEST_F(RenderTextTest, sends_nothing_where_it_fails) {
  const char *const missing = nullptr;
  EXPECT_EQ(tft_render_text(1, missing, 0, 0xF800, 0x07E0, true), -1);
  EXPECT_EQ(tft_render_text(1, missing, 3, 0xF800, 0x07E0, false), -1);
  EXPECT_EQ(tft_render_text(1, std::string_view(), 0, 0xF800, 0x07E0, true), -1);
  EXPECT_EQ(tft_render_text(1, "A", -1, 0xF800, 0x07E0, false), -1);
  EXPECT_EQ(tft_render_text(1, "_", 1, 0xF800, 0x07E0, false), -1);
  load("unencoded");
  EXPECT_EQ(tft_render_text(1, "A", 1, 0xF800, 0x07E0, false), -1);
  EXPECT_THAT(device.takeLines(), IsEmpty());
}

TEST_F(RenderTextTest, wants_a_text_even_without_freetype) {
  panel_lib_done();
  EXPECT_EQ(tft_render_text(1, {}, 0, 0xF800, 0x07E0, true), -1);
  EXPECT_THAT(device.takeLines(), IsEmpty());
  EXPECT_EQ(tft_render_text(1, "A", 1, 0xF800, 0x07E0, true), 0);
  EXPECT_THAT(device.takeLines(), ElementsAre("w 0a03 0"));
}

} // namespace
} // namespace buttondriver::panel
