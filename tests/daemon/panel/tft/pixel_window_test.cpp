// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/pixel_window.h"

#include <gtest/gtest.h>

namespace buttondriver::panel {
namespace {

struct Row {
  std::int64_t first;
  std::int64_t last;
  std::uint16_t columns;
  std::uint16_t rows;
};

// Column 0 of the glass is 4 of the controller, row 0 is 1; the last ones are 131 (83) and 128 (80).
const Row windows[] = {{0, 127, 0x8304, 0x8001},
                       {0, 0, 0x0404, 0x0101},
                       {24, 55, 0x3B1C, 0x3819},
                       {127, 127, 0x8383, 0x8080},
                       {-1, 128, 0x8304, 0x8001},
                       {-300, 10, 0x0E04, 0x0B01},
                       {100, 300, 0x8368, 0x8065},
                       {128, 140, 0x8384, 0x8081},
                       {300, 400, 0x8330, 0x802D},
                       {-50, -40, 0xDC04, 0xD901},
                       {0, -1, 0x0304, 0x0001},
                       {2147483647, 2147483648, 0x8303, 0x8000},
                       {-2147483648, -2147483609, 0x2B04, 0x2801}};

TEST(PixelWindowTest, clamps_each_edge_on_its_own_side_and_cuts_it_to_a_byte) {
  for (const Row &row : windows) {
    EXPECT_EQ(window_columns(row.first, row.last), row.columns) << row.first << " to " << row.last;
    EXPECT_EQ(window_rows(row.first, row.last), row.rows) << row.first << " to " << row.last;
  }
}

} // namespace
} // namespace buttondriver::panel
