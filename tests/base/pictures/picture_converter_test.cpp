// SPDX-License-Identifier: Apache-2.0
#include "pictures/picture_converter.h"

#include "buttonctl/support/pictures.h"
#include "support/hex.h"

#include <QImageReader>

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

using test::bmp_2x2;
using test::encoded;
using test::filled;
using test::from_hex;
using test::to_hex;

std::string hex(const QByteArray &bytes) { return to_hex(bytes.toStdString()); }
std::string golden(const char *digits) { return to_hex(from_hex(digits)); }

/// Red, green, blue over nearly black, white, black.
QImage picture_3x2() {
  QImage image(3, 2, QImage::Format_RGB32);
  image.setPixel(0, 0, qRgb(255, 0, 0));
  image.setPixel(1, 0, qRgb(0, 255, 0));
  image.setPixel(2, 0, qRgb(0, 0, 255));
  image.setPixel(0, 1, qRgb(1, 2, 3));
  image.setPixel(1, 1, qRgb(255, 255, 255));
  image.setPixel(2, 1, qRgb(0, 0, 0));
  return image;
}

constexpr char bmp_3x2[] = "424d 4e000000 0000 0000 36000000 28000000 03000000 02000000 0100 1800"
                           "00000000 18000000 130b0000 130b0000 00000000 00000000"
                           "030201 ffffff 000000 000000"
                           "0000ff 00ff00 ff0000 000000";

/// The size in the header of a converted picture.
QSize size_of(const QByteArray &bmp) { return QImage::fromData(bmp, "BMP").size(); }

TEST(PictureConverterTest, a_png_becomes_a_padded_bottom_up_24_bit_bmp) {
  const auto placed = place_picture(encoded(picture_3x2(), "PNG"), {10, 20}, Oversize::refuse);
  ASSERT_TRUE(placed);
  EXPECT_EQ(hex(placed->bmp), golden(bmp_3x2));
  EXPECT_EQ(placed->corner, QPoint(10, 20));
}

TEST(PictureConverterTest, other_bmps_become_24_bit_bmps) {
  const QImage few_colours = picture_3x2().convertToFormat(QImage::Format_Indexed8);
  const QByteArray few_bits = encoded(few_colours, "BMP");
  ASSERT_LE(few_bits.at(28), 8);

  QByteArray top_down = QByteArray::fromStdString(from_hex(bmp_3x2));
  top_down.replace(22, 4, QByteArray::fromHex("feffffff"));
  top_down = top_down.left(54) + top_down.mid(66, 12) + top_down.mid(54, 12);

  for (const QByteArray &file : {few_bits, top_down}) {
    const auto placed = place_picture(file, {0, 0}, Oversize::refuse);
    ASSERT_TRUE(placed) << placed.failure().text.toStdString();
    EXPECT_EQ(hex(placed->bmp), golden(bmp_3x2));
  }
}

TEST(PictureConverterTest, a_24_bit_bmp_is_left_as_it_is) {
  for (const Oversize oversize : {Oversize::refuse, Oversize::crop}) {
    const auto placed = place_picture(bmp_2x2(), {126, 126}, oversize);
    ASSERT_TRUE(placed);
    EXPECT_EQ(hex(placed->bmp), hex(bmp_2x2()));
    EXPECT_EQ(placed->corner, QPoint(126, 126));
  }
  const auto fitted = place_picture(bmp_2x2(), {126, 126}, Oversize::fit);
  ASSERT_TRUE(fitted);
  EXPECT_EQ(hex(fitted->bmp), hex(bmp_2x2()));
}

TEST(PictureConverterTest, transparent_pixels_lie_on_black) {
  QImage image(2, 1, QImage::Format_ARGB32);
  image.setPixel(0, 0, qRgba(255, 255, 255, 0));
  image.setPixel(1, 0, qRgba(255, 255, 255, 128));
  const auto placed = place_picture(encoded(image, "PNG"), {0, 0}, Oversize::refuse);
  ASSERT_TRUE(placed);
  EXPECT_EQ(hex(placed->bmp.mid(54)), golden("000000 808080 0000"));
}

TEST(PictureConverterTest, a_jpeg_becomes_a_bmp_of_its_size) {
  if (!QImageReader::supportedImageFormats().contains("jpeg"))
    GTEST_SKIP() << "this Qt reads no JPEG";
  const auto placed = place_picture(encoded(filled(16, 8, qRgb(255, 255, 255)), "JPEG"), {0, 0}, Oversize::refuse);
  ASSERT_TRUE(placed);
  EXPECT_EQ(hex(placed->bmp.left(2)), golden("424d"));
  EXPECT_EQ(size_of(placed->bmp), QSize(16, 8));
  EXPECT_EQ(hex(placed->bmp.mid(54, 3)), golden("ffffff"));
}

TEST(PictureConverterTest, crop_leaves_what_lies_on_the_screen) {
  QImage image(200, 3, QImage::Format_RGB32);
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      image.setPixel(x, y, qRgb(x, y, 0));
  struct Row {
    QPoint at;
    QPoint corner;
    QSize size;
    const char *bottom_left; ///< blue, green, red
  };
  const Row rows[] = {
      {{0, 0}, {0, 0}, {128, 3}, "000200"},
      {{-10, -1}, {0, 0}, {128, 2}, "00020a"},
      {{100, 126}, {100, 126}, {28, 2}, "000100"},
      {{-199, 0}, {0, 0}, {1, 3}, "0002c7"},
  };
  for (const Row &row : rows) {
    const auto placed = place_picture(encoded(image, "PNG"), row.at, Oversize::crop);
    ASSERT_TRUE(placed);
    EXPECT_EQ(placed->corner, row.corner);
    EXPECT_EQ(size_of(placed->bmp), row.size);
    EXPECT_EQ(hex(placed->bmp.mid(54, 3)), row.bottom_left);
  }
}

TEST(PictureConverterTest, a_24_bit_bmp_that_is_too_large_can_be_cropped_and_fitted) {
  const QByteArray file = encoded(filled(130, 65, qRgb(1, 2, 3)), "BMP");
  const auto cropped = place_picture(file, {0, 0}, Oversize::crop);
  ASSERT_TRUE(cropped);
  EXPECT_EQ(size_of(cropped->bmp), QSize(128, 65));
  const auto fitted = place_picture(file, {0, 0}, Oversize::fit);
  ASSERT_TRUE(fitted);
  EXPECT_EQ(size_of(fitted->bmp), QSize(128, 64));
  EXPECT_EQ(hex(fitted->bmp.mid(54, 3)), golden("030201"));
}

TEST(PictureConverterTest, fit_scales_to_the_room_and_keeps_proportions) {
  struct Row {
    QSize size;
    QPoint at;
    QSize fitted;
  };
  const Row rows[] = {
      {{256, 128}, {0, 0}, {128, 64}}, {{128, 256}, {64, 0}, {64, 128}}, {{2, 2}, {0, 0}, {128, 128}},
      {{10, 20}, {0, 108}, {10, 20}},  {{5000, 1}, {0, 0}, {128, 1}},    {{20, 10}, {127, 127}, {1, 1}},
  };
  for (const Row &row : rows) {
    const QImage image = filled(row.size.width(), row.size.height(), qRgb(255, 255, 255));
    const auto placed = place_picture(encoded(image, "PNG"), row.at, Oversize::fit);
    ASSERT_TRUE(placed);
    EXPECT_EQ(size_of(placed->bmp), row.fitted);
    EXPECT_EQ(placed->corner, row.at);
  }
}

TEST(PictureConverterTest, refuses_what_cannot_be_shown) {
  const QByteArray wide = encoded(filled(129, 4, 0), "PNG");
  const QByteArray high = encoded(filled(4, 129, 0), "BMP");
  const QByteArray small = encoded(filled(4, 4, 0), "PNG");
  const QByteArray whole = encoded(filled(4, 4, 0), "BMP");
  const QByteArray indexed = encoded(filled(4, 4, 0).convertToFormat(QImage::Format_Indexed8), "BMP");
  struct Row {
    QByteArray file;
    QPoint at;
    Oversize oversize;
    const char *text;
  };
  const Row rows[] = {
      {wide,
       {0, 0},
       Oversize::refuse,
       "a picture of 129x4 at 0,0 sticks out of the 128x128 screen; use --fit or --crop"},
      {high,
       {0, 0},
       Oversize::refuse,
       "a picture of 4x129 at 0,0 sticks out of the 128x128 screen; use --fit or --crop"},
      {small,
       {125, 0},
       Oversize::refuse,
       "a picture of 4x4 at 125,0 sticks out of the 128x128 screen; use --fit or --crop"},
      {small,
       {0, -1},
       Oversize::refuse,
       "a picture of 4x4 at 0,-1 sticks out of the 128x128 screen; use --fit or --crop"},
      {small, {128, 0}, Oversize::crop, "no part of the picture lies on the screen; change --at"},
      {small, {0, -4}, Oversize::crop, "no part of the picture lies on the screen; change --at"},
      {small, {-1, 0}, Oversize::fit, "--fit needs a corner on the screen, from 0,0 to 127,127"},
      {small, {0, 128}, Oversize::fit, "--fit needs a corner on the screen, from 0,0 to 127,127"},
      {whole.left(whole.size() - 1), {0, 0}, Oversize::refuse, "the picture is cut short"},
      {indexed.left(indexed.size() - 1), {0, 0}, Oversize::refuse, "the picture is cut short"},
      {"hello", {0, 0}, Oversize::refuse, "not a picture that can be read (neither PNG nor JPEG, BMP or GIF)"},
      {"", {0, 0}, Oversize::refuse, "not a picture that can be read (neither PNG nor JPEG, BMP or GIF)"},
  };
  for (const Row &row : rows) {
    const auto placed = place_picture(row.file, row.at, row.oversize);
    ASSERT_FALSE(placed) << row.text;
    EXPECT_EQ(placed.failure().text.toStdString(), row.text);
  }
}

TEST(PictureConverterTest, a_picture_that_just_fits_is_taken) {
  const auto placed = place_picture(encoded(filled(128, 128, 0), "PNG"), {0, 0}, Oversize::refuse);
  ASSERT_TRUE(placed);
  EXPECT_EQ(placed->bmp.size(), 54 + 128 * 128 * 3);
}

TEST(PictureConverterTest, a_button_image_of_120_bytes_is_left_as_it_is) {
  const QByteArray raw(120, '\x5A');
  const auto kept = convert_button_image(raw, {});
  ASSERT_TRUE(kept);
  EXPECT_EQ(*kept, raw);
  const auto inverted = convert_button_image(raw, {true, false});
  ASSERT_TRUE(inverted);
  EXPECT_EQ(*inverted, QByteArray(120, '\xA5'));
}

TEST(PictureConverterTest, light_pixels_of_a_40_by_24_picture_become_1) {
  QImage image = filled(40, 24, qRgb(127, 127, 127));
  image.setPixel(0, 0, qRgb(255, 255, 255));
  image.setPixel(39, 0, qRgb(128, 128, 128));
  image.setPixel(9, 23, qRgb(255, 255, 255));
  QByteArray expected(120, '\0');
  expected[0] = '\x80';
  expected[4] = '\x01';
  expected[116] = '\x40';
  const auto converted = convert_button_image(encoded(image, "PNG"), {});
  ASSERT_TRUE(converted);
  EXPECT_EQ(hex(*converted), hex(expected));
  const auto inverted = convert_button_image(encoded(image, "BMP"), {true, false});
  ASSERT_TRUE(inverted);
  EXPECT_EQ(hex(inverted->left(5)), "7ffffffffe");
}

TEST(PictureConverterTest, a_fitted_button_image_lies_in_the_middle_on_black) {
  struct Row {
    QSize size;
    int left; ///< of what is white; both edges belong to it
    int right;
    int top;
    int bottom;
  };
  // By hand: the larger ratio of the sides decides, and what is left is shared.
  const Row rows[] = {
      {{40, 24}, 0, 39, 0, 23},     {{400, 240}, 0, 39, 0, 23}, {{10, 6}, 0, 39, 0, 23}, {{100, 100}, 8, 31, 0, 23},
      {{1000, 100}, 0, 39, 10, 13}, {{1, 1000}, 19, 19, 0, 23}, {{3, 2}, 2, 37, 0, 23},
  };
  for (const Row &row : rows) {
    const QByteArray file = encoded(filled(row.size.width(), row.size.height(), qRgb(255, 255, 255)), "PNG");
    for (const bool invert : {false, true}) {
      const auto image = convert_button_image(file, {invert, true});
      ASSERT_TRUE(image);
      ASSERT_EQ(image->size(), 120);
      for (int y = 0; y < 24; ++y) {
        for (int x = 0; x < 40; ++x) {
          const bool is_set = (image->at(5 * y + x / 8) & (0x80 >> x % 8)) != 0;
          const bool is_white = x >= row.left && x <= row.right && y >= row.top && y <= row.bottom;
          EXPECT_EQ(is_set, is_white != invert) << row.size.width() << ": " << x << ' ' << y;
        }
      }
    }
  }
  const QByteArray raw(120, '\x5A');
  EXPECT_EQ(*convert_button_image(raw, {false, true}), raw);
}

TEST(PictureConverterTest, a_png_of_120_bytes_is_a_picture) {
  // Bytes after the end of a PNG mean nothing, so that a file of any length can be made.
  QImage image(40, 24, QImage::Format_Mono);
  image.fill(1);
  QByteArray file = encoded(image, "PNG");
  ASSERT_LE(file.size(), 120);
  file += QByteArray(120 - static_cast<int>(file.size()), '\0');
  const auto converted = convert_button_image(file, {});
  ASSERT_TRUE(converted);
  EXPECT_EQ(*converted, QByteArray(120, '\xFF'));
}

TEST(PictureConverterTest, refuses_what_is_no_button_image) {
  struct Row {
    QByteArray file;
    const char *text;
  };
  const Row rows[] = {
      {QByteArray(119, 'x'),
       "not 120 raw bytes, and not a picture that can be read (neither PNG nor JPEG, BMP or GIF)"},
      {encoded(filled(24, 40, 0), "PNG"), "a button image is 40x24 pixels, this picture is 24x40; use --fit"},
  };
  for (const Row &row : rows) {
    const auto converted = convert_button_image(row.file, {});
    ASSERT_FALSE(converted);
    EXPECT_EQ(converted.failure().text.toStdString(), row.text);
  }
}

} // namespace
} // namespace buttondriver::buttonctl
