// SPDX-License-Identifier: Apache-2.0
// What the model says, against values worked out by hand: a model that is wrong in the same way as the daemon would
// never complain.

#include "model/expected/panel_model.h"
#include "support/hex.h"

#include <gtest/gtest.h>

namespace buttondriver::test {
namespace {

class PanelModelTest : public testing::Test {
protected:
  PanelModelTest() {
    for (const auto &[width, height] : {std::pair(8, 16), std::pair(7, 5)})
      fonts[{width, height}] =
          BdfFont::read(BUTTONDRIVER_FONT_SOURCES "/" + std::to_string(width) + "x" + std::to_string(height) + ".bdf");
  }

  ShownPanel after(std::initializer_list<const char *> messages) const {
    PanelModel model(fonts, 8, 16);
    for (const char *message : messages)
      model.apply({Command::Kind::message, from_hex(message), 0, 0});
    return model.shown();
  }

  static std::uint16_t pixel(const ShownPanel &panel, std::size_t screen, int column, int row) {
    return panel.screens.at(screen).at(static_cast<std::size_t>(row * 128 + column));
  }

  FontCollection fonts;
};

TEST_F(PanelModelTest, draws_a_line_in_black_on_white_across_the_screen) {
  // "A" in line 1 of screen 1: its third row of bits, 10, is row 18 of the glass.
  const ShownPanel panel = after({"0000000f 00000001 00000001 00000000 00000002 4100"});
  EXPECT_EQ(pixel(panel, 1, 3, 18), 0x0000);
  EXPECT_EQ(pixel(panel, 1, 4, 18), 0xFFFF);
  EXPECT_EQ(pixel(panel, 1, 127, 31), 0xFFFF);
  EXPECT_EQ(pixel(panel, 1, 0, 32), 0x0000);
  EXPECT_EQ(pixel(panel, 0, 4, 18), 0x0000);
}

TEST_F(PanelModelTest, repeats_the_low_byte_of_the_background_outside_of_glyph_boxes) {
  // "." has a box of 4 x 4; red on green, at offset 3 of line 0.
  const ShownPanel panel = after({"00000012 00000000 00000000 00000003 00000001 00ff0000 0000ff00 00000002 2e00"});
  EXPECT_EQ(pixel(panel, 0, 24, 0), 0xF800);
  EXPECT_EQ(pixel(panel, 0, 25, 0), 0x07E0);
  EXPECT_EQ(pixel(panel, 0, 28, 0), 0xE0E0);
  EXPECT_EQ(pixel(panel, 0, 24, 4), 0xE0E0);
  EXPECT_EQ(pixel(panel, 0, 32, 0), 0x0000);
}

TEST_F(PanelModelTest, draws_nothing_when_a_glyph_of_the_line_is_empty) {
  EXPECT_EQ(pixel(after({"0000000f 00000000 00000000 00000000 00000003 415f00"}), 0, 0, 0), 0x0000);
  // After sixteen characters the line is full, but the empty glyph needs no room.
  const std::string head = "0000000f 00000000 00000000 00000000 00000011 42424242424242424242424242424242";
  EXPECT_EQ(pixel(after({(head + "5f").c_str()}), 0, 0, 1), 0x0000);
  EXPECT_EQ(pixel(after({(head + "41").c_str()}), 0, 0, 1), 0xFFFF);
}

// 2 x 2 pixels, the lower row first: blue, green, two bytes to fill the row; red, white.
constexpr const char *small_picture = "424d 00000000 00000000 36000000 28000000 02000000 02000000 0100 1800"
                                      "00000000 00000000 00000000 00000000 00000000 00000000"
                                      "ff0000 00ff00 0000 0000ff ffffff 0000";

std::string picture_message(const std::string &head) { return "00000013" + head + "00000046" + small_picture; }

TEST_F(PanelModelTest, draws_a_picture_from_its_last_row_up) {
  const ShownPanel panel = after({picture_message("00000002 0000000a 00000014").c_str()});
  EXPECT_EQ(pixel(panel, 2, 10, 20), 0xF800);
  EXPECT_EQ(pixel(panel, 2, 11, 20), 0xFFFF);
  EXPECT_EQ(pixel(panel, 2, 10, 21), 0x001F);
  EXPECT_EQ(pixel(panel, 2, 11, 21), 0x07E0);
}

TEST_F(PanelModelTest, writes_all_pixels_of_a_picture_that_hangs_over_into_what_is_left_of_its_window) {
  // The window is one column wide: the pixels go down it, and begin again at its top.
  const ShownPanel panel = after({picture_message("00000000 0000007f 00000000").c_str()});
  EXPECT_EQ(pixel(panel, 0, 127, 0), 0x001F);
  EXPECT_EQ(pixel(panel, 0, 127, 1), 0x07E0);
}

TEST_F(PanelModelTest, lets_a_column_counter_run_round_when_the_end_is_before_the_start) {
  // x = -3: from column 4 up to 255, from 0 to 2: 255 places a row, two of which get pixels in each of the two rows.
  const ShownPanel panel = after({picture_message("00000000 fffffffd 00000000").c_str()});
  EXPECT_EQ(pixel(panel, 0, 0, 0), 0xF800);
  EXPECT_EQ(pixel(panel, 0, 3, 0), 0x07E0);
  EXPECT_EQ(pixel(panel, 0, 0, 1), 0x0000);
}

TEST_F(PanelModelTest, decodes_led_commands_with_ids_that_spill_into_other_bits) {
  const ShownPanel panel = after({"00000011 00000005 00000001", // button 5 on
                                  "00000015 00000003 00000001", // status 3 on
                                  "00000015 ffffffc2 00000001", // 0xC2 + 0x80 + 0x20: button 2 on
                                  "00000016 00000001 00000001", "00000016 00000002 00000001"});
  EXPECT_TRUE(panel.button_leds[5]);
  EXPECT_TRUE(panel.button_leds[2]);
  EXPECT_TRUE(panel.status_leds[3]);
  EXPECT_EQ(panel.toggles, (std::array{false, true}));
}

TEST_F(PanelModelTest, blinks_off_first_and_changes_after_each_phase) {
  PanelModel model(fonts, 8, 16);
  model.apply({Command::Kind::message, from_hex("00000011 00000003 ffffffff 00000028"), 0, 0}); // 40 ms
  std::string seen;
  for (int i = 0; i < 9; ++i) {
    model.apply({Command::Kind::tick, {}, 0, 0});
    seen += model.shown().button_leds[3] ? '1' : '0';
  }
  EXPECT_EQ(seen, "001100110");
}

struct LevelFile {
  const char *text;
  unsigned intensity;
};

std::ostream &operator<<(std::ostream &stream, const LevelFile &row) { return stream << row.text; }

class LevelModelTest : public testing::TestWithParam<LevelFile> {};

TEST_P(LevelModelTest, gives_the_intensity) {
  LevelModel levels;
  levels.reconfig(std::string(GetParam().text));
  EXPECT_EQ(levels.intensity(), GetParam().intensity);
}

INSTANTIATE_TEST_SUITE_P(Of, LevelModelTest,
                         testing::Values(LevelFile{"lcd 40\nscr 70\n", 44}, LevelFile{"scr 50", 31},
                                         LevelFile{"scr 99\n", 62}, LevelFile{"scr 1\n", 0}, LevelFile{"scr 101\n", 63},
                                         LevelFile{"scr -1\n", 63}, LevelFile{"scr\n", 63}, LevelFile{"Scr 5\n", 63},
                                         LevelFile{"scr 10\nscr 20x\n\n", 12}));

} // namespace
} // namespace buttondriver::test
