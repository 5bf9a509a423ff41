// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/colour.h"

#include <gtest/gtest.h>

namespace buttondriver::panel {
namespace {

struct Row {
  std::uint32_t colour;
  std::uint16_t pixel;
};

const Row rows[] = {{0x000000, 0x0000}, {0xFFFFFF, 0xFFFF}, {0xFF0000, 0xF800}, {0x00FF00, 0x07E0}, {0x0000FF, 0x001F},
                    {0x070307, 0x0000}, {0x080408, 0x0821}, {0x102030, 0x1106}, {0x123456, 0x11AA}, {0xFEDCBA, 0xFEF7}};

TEST(ColourTest, keeps_5_6_and_5_bits) {
  for (const Row &row : rows) {
    EXPECT_EQ(rgb888_to_rgb565(row.colour), row.pixel) << std::hex << row.colour;
    EXPECT_EQ(bgr_to_rgb565(static_cast<std::uint8_t>(row.colour), static_cast<std::uint8_t>(row.colour >> 8),
                            static_cast<std::uint8_t>(row.colour >> 16)),
              row.pixel)
        << std::hex << row.colour;
  }
}

TEST(ColourTest, has_nothing_above_24_bits) {
  EXPECT_EQ(rgb888_to_rgb565(0xFF000000), 0x0000);
  EXPECT_EQ(rgb888_to_rgb565(0xFFFFFFFF), 0xFFFF);
}

} // namespace
} // namespace buttondriver::panel
