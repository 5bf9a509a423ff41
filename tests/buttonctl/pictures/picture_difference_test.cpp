// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/pictures/picture_difference.h"

#include "buttonctl/support/pictures.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace buttondriver::buttonctl {
namespace {

using test::filled;

/// Pixels of one row, "rrggbb rrggbb ...".
std::string row(const QImage &image, int y) {
  std::string text;
  for (int x = 0; x < image.width(); ++x) {
    char pixel[8];
    std::snprintf(pixel, sizeof pixel, "%06x ", image.pixel(x, y) & 0xFFFFFFU);
    text += pixel;
  }
  return text;
}

TEST(PictureDifferenceTest, shows_expected_actual_and_where_they_differ) {
  QImage expected = filled(2, 2, qRgb(0x40, 0x80, 0xFF));
  QImage actual = expected;
  actual.setPixel(1, 0, qRgb(0x40, 0x80, 0xFE));
  const QImage picture = difference_picture(expected, actual);
  EXPECT_EQ(picture.size(), QSize(14, 2));
  const std::string gap = "808080 808080 808080 808080 ";
  EXPECT_EQ(row(picture, 0), "4080ff 4080ff " + gap + "4080ff 4080fe " + gap + "10203f ff0000 ");
  EXPECT_EQ(row(picture, 1), "4080ff 4080ff " + gap + "4080ff 4080ff " + gap + "10203f 10203f ");
}

TEST(PictureDifferenceTest, what_one_picture_does_not_have_differs) {
  const QImage expected = filled(1, 2, 0);
  const QImage actual = filled(2, 1, 0);
  EXPECT_EQ(count_different_pixels(expected, actual), 2);
  const QImage picture = difference_picture(expected, actual);
  EXPECT_EQ(picture.size(), QSize(14, 2));
  const std::string gap = "808080 808080 808080 808080 ";
  EXPECT_EQ(row(picture, 0), "000000 000000 " + gap + "000000 000000 " + gap + "000000 ff0000 ");
  EXPECT_EQ(row(picture, 1).substr(0, 14), "000000 000000 ");
  EXPECT_EQ(row(picture, 1).substr(84, 7), "ff0000 ");
}

TEST(PictureDifferenceTest, counts_pixels_whatever_the_format) {
  const QImage expected = filled(3, 3, qRgb(255, 255, 255));
  EXPECT_EQ(count_different_pixels(expected, expected.convertToFormat(QImage::Format_Grayscale8)), 0);
  EXPECT_EQ(count_different_pixels(expected, filled(3, 3, qRgb(255, 255, 254))), 9);
  EXPECT_EQ(count_different_pixels(expected, expected.convertToFormat(QImage::Format_ARGB32)), 0);
}

TEST(PictureDifferenceTest, lies_beside_the_expected_picture) {
  EXPECT_EQ(difference_file(QStringLiteral("a/ready.png")).toStdString(), "a/ready.difference.png");
  EXPECT_EQ(difference_file(QStringLiteral("ready.2.png")).toStdString(), "ready.2.difference.png");
  EXPECT_EQ(difference_file(QStringLiteral("/b/ready")).toStdString(), "/b/ready.difference.png");
}

} // namespace
} // namespace buttondriver::buttonctl
