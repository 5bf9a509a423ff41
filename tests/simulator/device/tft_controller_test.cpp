// SPDX-License-Identifier: Apache-2.0
#include "simulator/device/tft_controller.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace buttondriver::simulator {
namespace {

class TftControllerTest : public testing::Test {
protected:
  void select(std::uint16_t index) {
    controller.writeIndex(static_cast<std::uint8_t>(index >> 8));
    controller.writeIndex(static_cast<std::uint8_t>(index));
  }
  void set(std::uint16_t index, std::uint16_t value) {
    select(index);
    controller.writeData(value);
  }
  /// Opens a window, end and start in one word each, and goes to its corner.
  void open(std::uint16_t columns, std::uint16_t rows) {
    set(0x44, columns);
    set(0x45, rows);
    set(0x21, 0);
    select(0x22);
  }
  void draw(const std::vector<std::uint16_t> &pixels) {
    for (const std::uint16_t pixel : pixels)
      controller.writeData(pixel);
  }
  void fill(std::size_t count, std::uint16_t pixel) { draw(std::vector<std::uint16_t>(count, pixel)); }

  std::uint16_t shown(std::size_t column, std::size_t row) const { return screen()[row * 128 + column]; }
  /// How many pixels of the glass are not black.
  long lit() const {
    const ScreenPixels pixels = screen();
    return std::count_if(pixels.begin(), pixels.end(), [](std::uint16_t pixel) { return pixel != 0; });
  }

  TftController controller;

private:
  ScreenPixels screen() const {
    ScreenPixels pixels;
    pixels.fill(0xDEAD);
    controller.copyVisible(pixels);
    return pixels;
  }
};

TEST_F(TftControllerTest, starts_black_with_the_whole_glass_as_its_window) {
  EXPECT_EQ(lit(), 0);
  select(0x22);
  fill(128 * 128 - 1, 0xFFFF);
  EXPECT_EQ(shown(0, 0), 0xFFFF);
  EXPECT_EQ(shown(126, 127), 0xFFFF);
  EXPECT_EQ(shown(127, 127), 0x0000);
  EXPECT_EQ(lit(), 16383);
}

TEST_F(TftControllerTest, fills_a_window_row_by_row_and_starts_again_at_its_corner) {
  open(0x0605, 0x0302); // columns 5 and 6 are 1 and 2 of the glass, rows 2 and 3 are 1 and 2
  draw({1, 2, 3, 4, 5});
  EXPECT_EQ(shown(1, 1), 5);
  EXPECT_EQ(shown(2, 1), 2);
  EXPECT_EQ(shown(1, 2), 3);
  EXPECT_EQ(shown(2, 2), 4);
  EXPECT_EQ(lit(), 4);
}

TEST_F(TftControllerTest, goes_on_where_it_was_when_only_the_write_index_is_selected_again) {
  open(0x0605, 0x0302);
  draw({1, 2, 3});
  select(0x22);
  draw({4});
  EXPECT_EQ(shown(2, 2), 4);
  EXPECT_EQ(shown(1, 1), 1);
}

TEST_F(TftControllerTest, goes_to_the_corner_for_any_ram_address) {
  open(0x0605, 0x0302);
  draw({1, 2, 3});
  set(0x21, 0x0102);
  select(0x22);
  draw({9});
  EXPECT_EQ(shown(1, 1), 9);
}

TEST_F(TftControllerTest, takes_an_index_as_two_bytes) {
  set(0x0144, 0x0605);
  EXPECT_EQ(controller.registerValue(0x0144), 0x0605);
  EXPECT_EQ(controller.registerValue(0x0044), 0);
  set(0x0044, 0x8304);
  set(0x0045, 0x8001);
  set(0x0021, 0);
  select(0x0122);
  draw({0xFFFF});
  EXPECT_EQ(lit(), 0);
  EXPECT_EQ(controller.registerValue(0x0122), 0xFFFF);
  select(0x0022);
  draw({0xFFFF});
  EXPECT_EQ(shown(0, 0), 0xFFFF);
}

TEST_F(TftControllerTest, remembers_register_values_but_no_pixels) {
  EXPECT_EQ(controller.registerValue(0x07), 0);
  set(0x07, 0x0037);
  set(0x07, 0x0033);
  set(0x44, 0x8304);
  EXPECT_EQ(controller.registerValue(0x07), 0x0033);
  EXPECT_EQ(controller.registerValue(0x44), 0x8304);
  select(0x22);
  draw({0x1234});
  EXPECT_EQ(controller.registerValue(0x22), 0);
}

TEST_F(TftControllerTest, keeps_pixels_beside_the_glass_out_of_sight) {
  open(0x0300, 0x8300); // columns 0 to 3, all rows of the memory
  fill(4 * 132, 0xFFFF);
  open(0x8300, 0x0000); // row 0
  fill(132, 0xFFFF);
  open(0x8300, 0x8381); // rows 129 to 131
  fill(3 * 132, 0xFFFF);
  EXPECT_EQ(lit(), 0);
}

TEST_F(TftControllerTest, never_carries_a_window_past_the_memory_into_the_next_row) {
  open(0x8C83, 0x0101); // columns 131 to 140 of row 1: the last one of the glass and nine that do not exist
  fill(10, 0xFFFF);
  EXPECT_EQ(shown(127, 0), 0xFFFF);
  EXPECT_EQ(lit(), 1);
}

TEST_F(TftControllerTest, ignores_rows_past_the_memory) {
  open(0x0404, 0x8880); // column 4, rows 128 to 136
  draw({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  EXPECT_EQ(shown(0, 127), 10); // after nine rows it is back at the corner
  EXPECT_EQ(lit(), 1);
}

TEST_F(TftControllerTest, stays_in_its_memory_whatever_the_window) {
  const std::pair<std::uint16_t, std::uint16_t> windows[] = {{0xFF00, 0xFF00}, {0x00FF, 0x00FF}, {0xFFFF, 0xFFFF},
                                                             {0x04C8, 0x01C8}, {0x8384, 0x8081}, {0x8083, 0x0180}};
  for (const auto &[columns, rows] : windows) {
    open(columns, rows);
    fill(65536, 0xFFFF);
  }
  EXPECT_EQ(shown(0, 0), 0xFFFF);
}

TEST_F(TftControllerTest, runs_around_through_255_when_a_window_ends_before_it_starts) {
  open(0x04FE, 0x0101); // columns 254, 255, 0 to 4
  draw({1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(shown(0, 0), 7);
  EXPECT_EQ(lit(), 1);
}

TEST_F(TftControllerTest, rows_have_changed_where_a_pixel_has_got_another_colour) {
  EXPECT_TRUE(controller.rowsChangedSince(0).empty());
  open(0x0706, 0x0605); // columns 6 and 7, rows 5 and 6: 2 and 3, 4 and 5 behind the glass
  draw({0x1111, 0x2222, 0x3333, 0x4444});
  open(0x0606, 0x0909);
  draw({0x5555});
  const std::vector<ScreenRows> rows = controller.rowsChangedSince(0);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].first_row, 4U);
  ASSERT_EQ(rows[0].pixels.size(), 2U * 128);
  EXPECT_EQ(rows[0].pixels[2], 0x1111);
  EXPECT_EQ(rows[0].pixels[3], 0x2222);
  EXPECT_EQ(rows[0].pixels[128 + 3], 0x4444);
  EXPECT_EQ(rows[0].pixels[0], 0x0000);
  EXPECT_EQ(rows[1].first_row, 8U);
  ASSERT_EQ(rows[1].pixels.size(), 128U);
  EXPECT_EQ(rows[1].pixels[2], 0x5555);
}

TEST_F(TftControllerTest, the_same_pixels_again_are_no_change) {
  open(0x0706, 0x0605);
  draw({0x1111, 0x2222, 0x3333, 0x4444});
  const std::uint64_t revision = controller.revision();
  draw({0x1111, 0x2222, 0x3333, 0x4444});
  EXPECT_EQ(controller.revision(), revision);
  EXPECT_TRUE(controller.rowsChangedSince(revision).empty());
  draw({0x1111, 0x2222, 0x3333, 0x4445});
  const std::vector<ScreenRows> rows = controller.rowsChangedSince(revision);
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].first_row, 5U);
  EXPECT_EQ(rows[0].pixels[3], 0x4445);
}

} // namespace
} // namespace buttondriver::simulator
