// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/text.h"

#include "panel/panel_lib.h"
#include "text_test.h"

namespace buttondriver::panel {
namespace {

using testing::IsEmpty;

class SubTextLineTest : public TextTest {};

const Lines start_pixels_on_screen_1 = {"w 0a04 1 0000", "w 0a04 1 2100", "w 0a05 1 0000", "w 0a04 1 0000",
                                        "w 0a04 1 2200"};

Lines window_on_screen_1(const std::string &columns, const std::string &rows) {
  return {"w 0a04 1 0000", "w 0a04 1 4400", "w 0a05 1 " + columns,
          "w 0a04 1 0000", "w 0a04 1 4500", "w 0a05 1 " + rows};
}

TEST_F(SubTextLineTest, sets_its_columns_then_its_rows_and_sends_one_run_of_pixels) {
  EXPECT_EQ(tft_sub_text_line(1, 2, 3, "ABAB", 4, red, green), 0);
  EXPECT_EQ(device.takeLines(),
            window_on_screen_1("3b1c", "3121") + start_pixels_on_screen_1 + Lines{"w 0a05 512 ..."} + whole_window);
}

TEST_F(SubTextLineTest, columns_stay_on_the_glass_on_their_own_side) {
  struct {
    int offset;
    int count;
    const char *columns;
    const char *pixels;
  } const rows[] = {
      {0, 1, "0b04", "128 ..."},  {15, 1, "837c", "128 ..."},         {16, 1, "8384", "128 ..."},
      {14, 4, "8374", "512 ..."}, {-1, 4, "1b04", "512 ..."},         {-9, 1, "c304", "128 ..."},
      {32, 1, "8304", "128 ..."}, {2147483647, 1, "83fc", "128 ..."}, {-2147483647 - 1, 1, "0b04", "128 ..."}};
  for (const auto &row : rows) {
    EXPECT_EQ(tft_sub_text_line(1, 0, row.offset, "AAAA", row.count, red, green), 0);
    EXPECT_EQ(device.takeLines(), window_on_screen_1(row.columns, "1101") + start_pixels_on_screen_1 +
                                      Lines{std::string("w 0a05 ") + row.pixels} + whole_window)
        << row.offset;
  }
}

TEST_F(SubTextLineTest, draws_a_block_as_wide_as_its_characters) {
  tft_sub_text_line(1, 0, 3, "AB", 2, red, green);
  EXPECT_EQ(picture_of(sentPixels(), 16), beside({letter_a, letter_b}));
  tft_sub_text_line(1, 0, 3, "ABBBB", 2, red, green);
  EXPECT_EQ(picture_of(sentPixels(), 16), beside({letter_a, letter_b}));
  tft_sub_text_line(1, 0, 3, ".", 1, red, green);
  EXPECT_EQ(picture_of(sentPixels(), 8), period());
}

TEST_F(SubTextLineTest, draws_blanks_past_the_end_of_its_text) {
  tft_sub_text_line(1, 0, 0, "A", 3, red, green);
  EXPECT_EQ(picture_of(sentPixels(), 24), beside({letter_a, blank, blank}));
  tft_sub_text_line(1, 0, 0, "", 1, red, green);
  EXPECT_EQ(picture_of(sentPixels(), 8), blank);
}

TEST_F(SubTextLineTest, ends_at_the_first_character_wider_than_what_is_left) {
  tft_sub_text_line(1, 0, 0, "WA", 2, red, green);
  EXPECT_EQ(picture_of(sentPixels(), 16), beside({letter_w, bare(4)}));
  tft_sub_text_line(1, 0, 0, "W", 1, red, green);
  EXPECT_EQ(picture_of(sentPixels(), 8), bare(8));
}

TEST_F(SubTextLineTest, draws_nothing_past_the_width_of_the_glass) {
  tft_sub_text_line(1, 0, 0, std::string(20, 'A'), 20, red, green);
  EXPECT_EQ(picture_of(sentPixels(), 160), beside({times(16, letter_a), bare(32)}));
  tft_sub_text_line(1, 0, 0, std::string(20, 'W'), 20, red, green);
  Picture cut = times(11, letter_w);
  for (std::string &row : cut)
    row.resize(128);
  EXPECT_EQ(picture_of(sentPixels(), 160), beside({cut, bare(32)}));
}

TEST_F(SubTextLineTest, does_not_look_at_characters_past_the_width_of_the_glass) {
  int result = -1;
  EXPECT_EQ(output_of([&] { result = tft_sub_text_line(1, 0, 0, std::string(17, 'A') + "_", 18, red, green); }), "");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(picture_of(sentPixels(), 144), beside({times(16, letter_a), bare(16)}));
}

TEST_F(SubTextLineTest, fails_for_an_empty_glyph_where_the_width_of_the_glass_is_used_up) {
  for (const int count : {17, 18}) {
    int result = 0;
    EXPECT_EQ(output_of([&] { result = tft_sub_text_line(1, 0, 0, std::string(16, 'A') + "_A", count, red, green); }),
              "Error generating line bitmap using FreeType.\n");
    EXPECT_EQ(result, -1) << count;
  }
}

TEST_F(SubTextLineTest, sends_a_count_cut_to_16_bits) {
  // 600 cells are 4800 columns, 76800 pixels, 11264 above 65536: two rows and 1664 pixels.
  EXPECT_EQ(tft_sub_text_line(1, 0, 0, std::string(600, 'B'), 600, red, green), 0);
  const std::vector<std::uint16_t> pixels = sentPixels();
  ASSERT_EQ(pixels.size(), 11264U);
  const Picture picture = picture_of(pixels, 4800);
  ASSERT_EQ(picture.size(), 3U);
  const std::string bare_rest(4800 - 128, 'o');
  EXPECT_EQ(picture[0], std::string(128, '#') + bare_rest);
  EXPECT_EQ(picture[1], std::string(128, '.') + bare_rest);
  EXPECT_EQ(picture[2], times(16, {"######.."})[0] + std::string(1664 - 128, 'o'));
}

TEST_F(SubTextLineTest, count_of_zero_sends_no_pixels) {
  EXPECT_EQ(tft_sub_text_line(1, 0, 3, "A", 0, red, green), 0);
  EXPECT_EQ(device.takeLines(),
            window_on_screen_1("1b1c", "1101") + start_pixels_on_screen_1 + Lines{"w 0a05 0"} + whole_window);
}

TEST_F(SubTextLineTest, shows_the_blank_that_was_drawn_last_where_the_pen_goes_back) {
  load("backwards");
  // At column 0 "B", then blanks at 20, 17 and so on; the one at -1 is the last to be seen.
  const std::string seen = "..#..#..#..#..#..#..#..#";
  for (const int count : {9, 10, 300}) {
    tft_sub_text_line(1, 0, 0, "B", count, red, green);
    const std::size_t columns = 4 * static_cast<std::size_t>(count);
    EXPECT_EQ(picture_of(sentPixels(), columns), Picture(2, seen + std::string(columns - seen.size(), 'o'))) << count;
  }
}

TEST_F(SubTextLineTest, shows_the_blanks_that_come_back_from_the_left) {
  load("forwards");
  // "A" at 0, -4 and -8, then blanks from -12 on, each 3 columns further.
  const std::pair<int, std::string> rows[] = {{3, ""}, {6, ""}, {7, "#"}, {8, "#..#"}, {9, "#..#..#"}};
  for (const auto &[count, blanks] : rows) {
    const std::size_t columns = 4 * static_cast<std::size_t>(count);
    const std::string bare_end(columns - 4, 'o');
    Picture expected = {"####" + bare_end, "...." + bare_end};
    for (std::string &row : expected)
      row.replace(0, blanks.size(), blanks);
    tft_sub_text_line(1, 0, 0, "AAA", count, red, green);
    EXPECT_EQ(picture_of(sentPixels(), columns), expected) << count;
  }
}

TEST_F(SubTextLineTest, highest_count_ends_early_where_the_pen_does_not_advance) {
  struct {
    const char *font;
    int most_characters;
    const char *window_columns;
    const char *window_rows;
  } const rows[] = {{"standing", 67108864, "8304", "0201"},
                    {"backwards", 8388608, "8304", "0301"},
                    {"flat", 2147483647, "8304", "0101"}};
  for (const auto &row : rows) {
    load(row.font);
    EXPECT_EQ(tft_sub_text_line(1, 0, 0, "B", row.most_characters, red, green), 0) << row.font;
    EXPECT_EQ(device.takeLines(), window_on_screen_1(row.window_columns, row.window_rows) + start_pixels_on_screen_1 +
                                      Lines{"w 0a05 0"} + whole_window)
        << row.font;
  }
}

TEST_F(SubTextLineTest, line_of_67108864_pixels_is_drawn) {
  // 128 pixels a cell; 524288 cells are the limit, cut to 16 bits a count of 0.
  EXPECT_EQ(tft_sub_text_line(1, 0, 0, "A", 524288, red, green), 0);
  EXPECT_EQ(device.takeLines(),
            window_on_screen_1("8304", "1101") + start_pixels_on_screen_1 + Lines{"w 0a05 0"} + whole_window);
}

TEST_F(SubTextLineTest, too_large_or_negative_count_is_reported_and_resets_the_window) {
  const std::pair<int, const char *> rows[] = {
      {524289, "831c"}, {2147483647, "831c"}, {-1, "131c"}, {-2147483647 - 1, "1b1c"}};
  for (const auto &[count, columns] : rows) {
    int result = 0;
    EXPECT_EQ(output_of([&, characters = count] { result = tft_sub_text_line(1, 0, 3, "A", characters, red, green); }),
              "Error generating line bitmap using FreeType.\n");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(device.takeLines(), window_on_screen_1(columns, "1101") + start_pixels_on_screen_1 + whole_window)
        << count;
  }
}

TEST_F(SubTextLineTest, fails_without_a_text) {
  const char *const missing = nullptr;
  int result = 0;
  EXPECT_EQ(output_of([&] { result = tft_sub_text_line(1, 1, 3, missing, 4, red, green); }),
            "Error generating line bitmap using FreeType.\n");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(device.takeLines(), window_on_screen_1("3b1c", "2111") + start_pixels_on_screen_1 + whole_window);
}

TEST_F(SubTextLineTest, reads_no_further_than_its_count_or_the_nul) {
  const char text[] = {'A', 'B', 'A'}; // without a NUL
  tft_sub_text_line(1, 0, 0, text, 2, red, green);
  EXPECT_EQ(picture_of(sentPixels(), 16), beside({letter_a, letter_b}));
  const char *const with_nul = "A\0B";
  tft_sub_text_line(1, 0, 0, with_nul, 3, red, green);
  EXPECT_EQ(picture_of(sentPixels(), 24), beside({letter_a, blank, blank}));
}

TEST_F(SubTextLineTest, wrong_screen_is_reported_and_writes_nothing) {
  int result = 0;
  EXPECT_EQ(output_of([&] { result = tft_sub_text_line(7, 0, 0, "A", 1, red, green); }), "Invalid screen ID 7.\n");
  EXPECT_EQ(result, -1);
  EXPECT_THAT(device.takeLines(), IsEmpty());
}

TEST_F(SubTextLineTest, undrawable_glyph_is_reported_and_resets_the_window) {
  const std::pair<const char *, Lines> rows[] = {{"8x16-in-two-bytes", window_on_screen_1("3b1c", "2111")},
                                                 {"unencoded", window_on_screen_1("0304", "0101")}};
  for (const auto &[font, window] : rows) {
    load(font);
    EXPECT_EQ(output_of([] { tft_sub_text_line(1, 1, 3, "AAAA", 4, red, green); }),
              "Error generating line bitmap using FreeType.\n");
    EXPECT_EQ(device.takeLines(), window + start_pixels_on_screen_1 + whole_window) << font;
  }
}

TEST_F(SubTextLineTest, sends_no_pixels_and_is_quiet_without_freetype) {
  panel_lib_done();
  int result = -1;
  EXPECT_EQ(output_of([&] { result = tft_sub_text_line(1, 1, 3, "AAAA", 4, red, green); }), "");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(device.takeLines(),
            window_on_screen_1("0304", "0101") + start_pixels_on_screen_1 + Lines{"w 0a05 0"} + whole_window);
}

} // namespace
} // namespace buttondriver::panel
