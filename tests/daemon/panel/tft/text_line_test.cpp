// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/text.h"

#include "panel/panel_lib.h"
#include "text_test.h"

namespace buttondriver::panel {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class TextLineTest : public TextTest {};

const Lines start_pixels_on_screen_0 = {"w 0a02 1 0000", "w 0a02 1 2100", "w 0a03 1 0000", "w 0a02 1 0000",
                                        "w 0a02 1 2200"};

Lines rows_on_screen_0(const std::string &value) { return {"w 0a02 1 0000", "w 0a02 1 4500", "w 0a03 1 " + value}; }

TEST_F(TextLineTest, sets_its_rows_and_sends_one_run_of_pixels) {
  EXPECT_EQ(tft_text_line(0, 2, "AB", red, green), 0);
  EXPECT_EQ(device.takeLines(),
            rows_on_screen_0("3121") + start_pixels_on_screen_0 + Lines{"w 0a03 2048 ..."} + whole_window);
}

TEST_F(TextLineTest, rows_reach_one_past_the_line_and_stay_on_the_glass) {
  const std::pair<int, const char *> rows[] = {{0, "1101"},  {1, "2111"},          {6, "7161"},
                                               {7, "8071"},  {8, "8081"},          {-1, "0101"},
                                               {-2, "f101"}, {2147483647, "80f1"}, {-2147483647 - 1, "1101"}};
  for (const auto &[line, value] : rows) {
    EXPECT_EQ(tft_text_line(0, line, "A", red, green), 0);
    EXPECT_EQ(device.takeLines(),
              rows_on_screen_0(value) + start_pixels_on_screen_0 + Lines{"w 0a03 2048 ..."} + whole_window)
        << line;
  }
}

TEST_F(TextLineTest, goes_to_the_ports_of_its_screen) {
  struct {
    int screen;
    const char *index_port;
    const char *data_port;
  } const rows[] = {{1, "w 0a04", "w 0a05"}, {2, "w 0a08", "w 0a09"}, {-1, "w 0a0e", "w 0a0f"}};
  for (const auto &row : rows) {
    const std::string index = row.index_port;
    const std::string data = row.data_port;
    EXPECT_EQ(tft_text_line(row.screen, 0, "A", red, green), 0);
    EXPECT_EQ(device.takeLines(),
              (Lines{index + " 1 0000", index + " 1 4500", data + " 1 1101", index + " 1 0000", index + " 1 2100",
                     data + " 1 0000", index + " 1 0000", index + " 1 2200", data + " 2048 ..."} +
               whole_window));
  }
}

TEST_F(TextLineTest, draws_characters_from_the_left_on_a_bare_back) {
  tft_text_line(0, 0, "AB", red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({letter_a, letter_b, bare(112)}));
}

TEST_F(TextLineTest, takes_characters_as_unsigned) {
  tft_text_line(0, 0, "\xE9", red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({letter_e_acute, bare(120)}));
}

TEST_F(TextLineTest, shows_the_back_colour_only_inside_of_glyphs) {
  tft_text_line(0, 0, "A.A ", red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({letter_a, period(), letter_a, blank, bare(96)}));
}

TEST_F(TextLineTest, black_and_white_backs_come_out_exact) {
  tft_text_line(0, 0, "", red, 0xFFFFFF);
  EXPECT_THAT(device.takeLines(), testing::Contains("w 0a03 2048 ffff * 2048"));
  tft_text_line(0, 0, "", red, 0x000000);
  EXPECT_THAT(device.takeLines(), testing::Contains("w 0a03 2048 0000 * 2048"));
}

TEST_F(TextLineTest, holds_16_characters_of_8_pixels) {
  tft_text_line(0, 0, "AAAAAAAAAAAAAAAA", red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), times(16, letter_a));
  tft_text_line(0, 0, "AAAAAAAAAAAAAAAAB", red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), times(16, letter_a));
}

TEST_F(TextLineTest, ends_at_the_first_character_that_does_not_fit) {
  tft_text_line(0, 0, "WWWWWWWWWWW.A", red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({times(10, letter_w), bare(8)}));
}

TEST_F(TextLineTest, draws_characters_that_fill_the_last_columns) {
  tft_text_line(0, 0, "WWWWWWWWWWA", red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({times(10, letter_w), letter_a}));
}

TEST_F(TextLineTest, cuts_a_character_taller_than_the_cell) {
  tft_text_line(0, 0, "|A", red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({Picture(16, "#ooooooo"), letter_a, bare(112)}));
}

TEST_F(TextLineTest, draws_the_font_s_default_for_a_character_without_a_glyph) {
  tft_text_line(0, 0, "Z", red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({letter_b, bare(120)}));
}

TEST_F(TextLineTest, follows_a_change_of_the_font) {
  tft_text_line(0, 1, "A", red, green);
  device.take();
  load("5x4");
  tft_text_line(0, 1, "A", red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({{"..#..", ".#.#.", "#####", "#...#"}, bare(123, 4)}));
  tft_text_line(0, 1, "A", red, green);
  EXPECT_EQ(device.takeLines(),
            rows_on_screen_0("0905") + start_pixels_on_screen_0 + Lines{"w 0a03 512 ..."} + whole_window);
}

TEST_F(TextLineTest, drops_what_does_not_fit_between_cells_of_5_pixels) {
  load("5x4");
  tft_text_line(0, 0, std::string(26, 'A'), red, green);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({times(25, {"..#..", ".#.#.", "#####", "#...#"}), bare(3, 4)}));
}

TEST_F(TextLineTest, default_colours_are_black_on_white_and_the_window_is_reset_twice) {
  EXPECT_EQ(tft_text_line_default(0, 0, "A"), 0);
  EXPECT_EQ(device.takeLines(), rows_on_screen_0("1101") + start_pixels_on_screen_0 + Lines{"w 0a03 2048 ..."} +
                                    whole_window + whole_window);
  tft_text_line_default(0, 0, "A");
  const std::vector<std::uint16_t> pixels = sentPixels();
  ASSERT_THAT(pixels, SizeIs(2048));
  for (std::size_t i = 0; i < pixels.size(); ++i)
    ASSERT_EQ(pixels[i], i % 128 < 8 && letter_a[i / 128][i % 128] == '#' ? 0x0000 : 0xFFFF) << i;
}

TEST_F(TextLineTest, wrong_screen_is_reported_and_writes_nothing) {
  int result = 0;
  EXPECT_EQ(output_of([&] { result = tft_text_line(3, 0, "A", red, green); }), "Invalid screen ID 3.\n");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(output_of([&] { result = tft_text_line_default(-2, 0, "A"); }), "Invalid screen ID -2.\n");
  EXPECT_EQ(result, -1);
  EXPECT_THAT(device.takeLines(), IsEmpty());
}

TEST_F(TextLineTest, undrawable_glyph_is_reported_and_resets_the_window) {
  const char *const fonts[] = {"8x16-in-two-bytes", "8x16-in-one-byte", "33x2", "unencoded"};
  for (const std::string font : fonts) {
    load(font);
    // Where "A" has no glyph there is no cell either.
    const char *rows = font == "unencoded" ? "0101" : font == "33x2" ? "0503" : "2111";
    int result = 0;
    EXPECT_EQ(output_of([&] { result = tft_text_line(0, 1, "A", red, green); }),
              "Error generating line bitmap using FreeType.\n");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(device.takeLines(), rows_on_screen_0(rows) + start_pixels_on_screen_0 + whole_window) << font;
  }
}

TEST_F(TextLineTest, fails_for_one_empty_glyph_among_good_ones) {
  EXPECT_EQ(output_of([] { tft_text_line(0, 0, "AB_", red, green); }),
            "Error generating line bitmap using FreeType.\n");
  EXPECT_EQ(device.takeLines(), rows_on_screen_0("1101") + start_pixels_on_screen_0 + whole_window);
}

TEST_F(TextLineTest, fails_for_an_empty_glyph_at_the_end_of_a_full_line_and_not_after_it) {
  const std::string full_line(16, 'A');
  int result = 0;
  EXPECT_EQ(output_of([&] { result = tft_text_line(0, 0, full_line + "_", red, green); }),
            "Error generating line bitmap using FreeType.\n");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(device.takeLines(), rows_on_screen_0("1101") + start_pixels_on_screen_0 + whole_window);
  EXPECT_EQ(output_of([&] { result = tft_text_line(0, 0, full_line + "A_", red, green); }), "");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(picture_of(sentPixels(), 128), times(16, letter_a));
}

TEST_F(TextLineTest, drops_a_glyph_too_wide_for_what_is_left_whatever_its_form) {
  int result = 0;
  EXPECT_EQ(output_of([&] { result = tft_text_line(0, 0, std::string(12, 'A') + "#", red, green); }), "");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(picture_of(sentPixels(), 128), beside({times(12, letter_a), bare(32)}));
  EXPECT_EQ(output_of([&] { result = tft_text_line(0, 0, std::string(11, 'A') + "#", red, green); }),
            "Error generating line bitmap using FreeType.\n");
  EXPECT_EQ(result, -1);
}

TEST_F(TextLineTest, fails_without_a_text) {
  const char *const missing = nullptr;
  for (const bool by_pointer : {false, true}) {
    int result = 0;
    EXPECT_EQ(output_of([&] {
                result = by_pointer ? tft_text_line(0, 0, missing, red, green)
                                    : tft_text_line(0, 0, std::string_view(), red, green);
              }),
              "Error generating line bitmap using FreeType.\n");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(device.takeLines(), rows_on_screen_0("1101") + start_pixels_on_screen_0 + whole_window);
  }
  int result = 0;
  EXPECT_EQ(output_of([&] { result = tft_text_line_default(0, 0, missing); }),
            "Error generating line bitmap using FreeType.\n");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(device.takeLines(), rows_on_screen_0("1101") + start_pixels_on_screen_0 + whole_window + whole_window);
}

TEST_F(TextLineTest, fails_by_default_too_and_resets_the_window_twice) {
  load("unencoded");
  int result = 0;
  EXPECT_EQ(output_of([&] { result = tft_text_line_default(0, 0, "A"); }),
            "Error generating line bitmap using FreeType.\n");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(device.takeLines(), rows_on_screen_0("0101") + start_pixels_on_screen_0 + whole_window + whole_window);
}

TEST_F(TextLineTest, sends_no_pixels_and_is_quiet_without_freetype) {
  panel_lib_done();
  int result = -1;
  EXPECT_EQ(output_of([&] { result = tft_text_line(0, 3, "A", red, green); }), "");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(device.takeLines(), rows_on_screen_0("0101") + start_pixels_on_screen_0 + Lines{"w 0a03 0"} + whole_window);
}

} // namespace
} // namespace buttondriver::panel
