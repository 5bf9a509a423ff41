// SPDX-License-Identifier: Apache-2.0
#include "simulator/picture/screen_image.h"

#include <gtest/gtest.h>

namespace buttondriver::simulator {
namespace {

struct Row {
  const char *condition;
  std::uint16_t pixel;
  int intensity;
  QRgb shown;
};

void PrintTo(const Row &row, std::ostream *out) { *out << row.condition; }

class ScreenImageColourTest : public testing::TestWithParam<Row> {};

TEST_P(ScreenImageColourTest, is_widened_and_dimmed) {
  ScreenPixels pixels{};
  pixels[5 * 128 + 7] = GetParam().pixel;
  const QImage image = screen_image(pixels, GetParam().intensity);
  EXPECT_EQ(image.pixel(7, 5), GetParam().shown) << std::hex << image.pixel(7, 5);
  EXPECT_EQ(image.pixel(8, 5), 0xFF000000U);
  EXPECT_EQ(image.pixel(7, 6), 0xFF000000U);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ScreenImageColourTest,
    testing::Values(Row{"black", 0x0000, 63, 0xFF000000}, Row{"white", 0xFFFF, 63, 0xFFFFFFFF},
                    Row{"red", 0xF800, 63, 0xFFFF0000}, Row{"green", 0x07E0, 63, 0xFF00FF00},
                    Row{"blue", 0x001F, 63, 0xFF0000FF}, Row{"middle grey", 0x8410, 63, 0xFF848284},
                    Row{"lowest step of each channel", 0x0821, 63, 0xFF080408},
                    Row{"2, 17 and 20", 0x1234, 63, 0xFF1045A5}, Row{"21, 30 and 13", 0xABCD, 63, 0xFFAD796B},
                    Row{"black without intensity", 0x0000, 0, 0xFF000000},
                    Row{"white without intensity", 0xFFFF, 0, 0xFF404040},
                    Row{"grey without intensity, a half rounded up", 0x8410, 0, 0xFF212121},
                    Row{"white at 31", 0xFFFF, 31, 0xFF9E9E9E}, Row{"red at 42", 0xF800, 42, 0xFFBF0000},
                    Row{"2, 17 and 20 at 42", 0x1234, 42, 0xFF0C347C}, Row{"white at 62", 0xFFFF, 62, 0xFFFCFCFC},
                    Row{"just above the highest intensity", 0x07E0, 64, 0xFF00FF00},
                    Row{"far above the highest intensity", 0xABCD, 0x7FFFFFFF, 0xFFAD796B}));

TEST(ScreenImageTest, is_opaque_128_by_128) {
  const QImage image = screen_image(ScreenPixels{}, 63);
  EXPECT_EQ(image.size(), QSize(128, 128));
  EXPECT_EQ(image.format(), QImage::Format_RGB32);
}

TEST(ScreenImageTest, starts_with_the_top_row_from_the_left) {
  ScreenPixels pixels{};
  pixels.front() = 0xF800;
  pixels[127] = 0x07E0;
  pixels[127 * 128] = 0x001F;
  pixels.back() = 0xFFFF;
  const QImage image = screen_image(pixels, 63);
  EXPECT_EQ(image.pixel(0, 0), 0xFFFF0000U);
  EXPECT_EQ(image.pixel(127, 0), 0xFF00FF00U);
  EXPECT_EQ(image.pixel(0, 127), 0xFF0000FFU);
  EXPECT_EQ(image.pixel(127, 127), 0xFFFFFFFFU);
}

TEST(ScreenImageTest, never_gets_darker_with_more_intensity) {
  ScreenPixels every_step{};
  for (unsigned step = 0; step < 64; ++step)
    every_step[step] = static_cast<std::uint16_t>(step / 2 << 11 | step << 5 | step / 2);
  QImage before = screen_image(every_step, 0);
  for (int intensity = 1; intensity <= 63; ++intensity) {
    const QImage now = screen_image(every_step, intensity);
    for (int step = 0; step < 64; ++step) {
      EXPECT_GE(qRed(now.pixel(step, 0)), qRed(before.pixel(step, 0))) << step << " at " << intensity;
      EXPECT_GE(qGreen(now.pixel(step, 0)), qGreen(before.pixel(step, 0))) << step << " at " << intensity;
      EXPECT_GE(qBlue(now.pixel(step, 0)), qBlue(before.pixel(step, 0))) << step << " at " << intensity;
    }
    EXPECT_GT(qRed(now.pixel(63, 0)), qRed(before.pixel(63, 0))) << intensity;
    before = now;
  }
}

} // namespace
} // namespace buttondriver::simulator
