// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/text.h"

#include "daemon/panel/library_calls.h"
#include "panel/panel_lib.h"
#include "text_test.h"

namespace buttondriver::panel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RenderTextTest : public TextTest {
protected:
  const library_calls::Restore restore;
};

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

TEST_F(RenderTextTest, fails_for_a_character_that_cannot_be_loaded_among_good_ones) {
  library_calls::loaded_character = [](FT_GlyphSlot, FT_ULong character, FT_Int32) {
    return character == 'B' ? FT_Err_Invalid_Glyph_Index : FT_Err_Ok;
  };
  EXPECT_EQ(tft_render_text(1, "ABA", 3, 0xF800, 0x07E0, true), -1);
  EXPECT_THAT(device.takeLines(), IsEmpty());
  EXPECT_EQ(tft_render_text(1, "AAA", 3, 0xF800, 0x07E0, true), 0);
}

/// Takes every transfer at once, and needs no memory for that.
class WillingDevice : public RegisterDevice {
public:
  WillingDevice() { use_register_device(this); }
  ~WillingDevice() override { use_register_device(nullptr); }
  int open(const char *) override { return 0; }
  int transfer(int, unsigned long, TransferRecord &, std::uint16_t *) override { return 0; }
};

TEST_F(RenderTextTest, takes_no_memory_and_renders_no_character_again) {
  const WillingDevice willing;
  EXPECT_EQ(tft_text_line(0, 0, "AB.\xE9W", red, green), 0);
  int loaded = 0;
  library_calls::loaded_character = [&](FT_GlyphSlot, FT_ULong, FT_Int32) {
    ++loaded;
    return FT_Err_Ok;
  };
  const std::size_t allocations = library_calls::allocations;
  EXPECT_EQ(tft_text_line(0, 1, "AWAB\xE9.", green, red), 0);
  EXPECT_EQ(tft_sub_text_line(0, 2, 3, "WA.B", 9, green, red), 0);
  EXPECT_EQ(tft_sub_text_line(0, 2, 3, std::string_view("B", 1), 511, green, red), 0);
  EXPECT_EQ(library_calls::allocations, allocations);
  EXPECT_EQ(loaded, 2) << "the blank, by its size and then by its pixels";
}

/// Gives each character that is rendered from now on the advance, in pixels, that `advance` returns.
template <typename Advance> void change_advances(Advance advance) {
  library_calls::loaded_character = [=](FT_GlyphSlot slot, FT_ULong character, FT_Int32) {
    const auto [x, y] = advance(character);
    slot->advance = {FT_Pos{x} * 64, FT_Pos{y} * 64};
    return FT_Err_Ok;
  };
}

TEST_F(RenderTextTest, pen_moves_down_and_up_too) {
  Picture lower(3, "oooooooo");
  lower.insert(lower.end(), letter_b.begin(), letter_b.end() - 3);
  change_advances([](FT_ULong) { return std::pair(8, 3); });
  EXPECT_EQ(tft_render_text(1, "AB", 2, 0xF800, 0x07E0, false), 0);
  EXPECT_EQ(picture_of(sentPixels(), 16), beside({letter_a, lower}));

  Picture higher(letter_b.begin() + 3, letter_b.end());
  higher.resize(16, "oooooooo");
  change_advances([](FT_ULong) { return std::pair(8, -3); });
  load("8x16"); // renders its characters again
  EXPECT_EQ(tft_render_text(1, "AB", 2, 0xF800, 0x07E0, false), 0);
  EXPECT_EQ(picture_of(sentPixels(), 16), beside({letter_a, higher}));
}

TEST_F(RenderTextTest, blanks_that_move_up_only_are_all_drawn) {
  change_advances([](FT_ULong character) { return std::pair(0, character == 'A' ? 12 : -4); });
  EXPECT_EQ(tft_render_text(1, "A", 4, 0xF800, 0x07E0, false), 0);
  Picture expected(letter_a.begin(), letter_a.begin() + 4);
  expected.resize(16, "........");
  EXPECT_EQ(picture_of(sentPixels(), 32), beside({expected, bare(24)}));
}

TEST_F(RenderTextTest, draws_4096_characters_at_most_where_the_pen_stands_still) {
  change_advances([](FT_ULong) { return std::pair(0, 0); });
  const std::string text = std::string(4095, 'A') + "BA";
  EXPECT_EQ(tft_render_text(1, text, 4097, 0xF800, 0x07E0, true), 0);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({letter_b, bare(120)}));
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
