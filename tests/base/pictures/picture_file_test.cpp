// SPDX-License-Identifier: Apache-2.0
// Files are written by Qt or by hand, and read by the tool; what the tool writes, Qt reads.
#include "pictures/picture_file.h"

#include "buttonctl/support/pictures.h"
#include "support/hex.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace buttondriver::buttonctl {
namespace {

using test::encoded;
using test::filled;
using test::from_hex;

QByteArray bytes(const char *digits) { return QByteArray::fromStdString(from_hex(digits)); }

std::string colour(Colour pixel) {
  char text[8];
  std::snprintf(text, sizeof text, "%02x%02x%02x", pixel.red, pixel.green, pixel.blue);
  return text;
}

/// The pixels, "rrggbb rrggbb / rrggbb rrggbb", or why there are none.
std::string pixels(const Outcome<Picture> &picture) {
  if (!picture)
    return picture.failure().text.toStdString();
  std::string text;
  for (int y = 0; y < picture->height(); ++y) {
    text += y > 0 ? " /" : "";
    for (int x = 0; x < picture->width(); ++x)
      text += (text.empty() ? "" : " ") + colour(picture->at(x, y));
  }
  return text;
}

/// Red and green over blue and white.
QImage four_colours() {
  QImage image(2, 2, QImage::Format_RGB32);
  image.setPixel(0, 0, qRgb(255, 0, 0));
  image.setPixel(1, 0, qRgb(0, 255, 0));
  image.setPixel(0, 1, qRgb(0, 0, 255));
  image.setPixel(1, 1, qRgb(255, 255, 255));
  return image;
}

/// Red and green, then a second picture that does not count. Green is transparent when `flags` is "01".
QByteArray gif_2x1(const char *flags) {
  return bytes("474946383961 0200 0100 80 00 00 ff0000 00ff00") + bytes("21f904") + bytes(flags) +
         bytes("0000 01 00 2c 0000 0000 0200 0100 00 02 02 440a 00 3b");
}

/// 32 bits a pixel and an information header of 40 bytes: the fourth byte means nothing.
QByteArray bmp_of_32_bits() {
  return bytes("424d 3e000000 0000 0000 36000000 28000000 02000000 01000000 0100 2000"
               "00000000 08000000 00000000 00000000 00000000 00000000 030201 10 060504 00");
}

/// 8 bits a pixel, one colour, and pixels of the colours 0 and 200.
QByteArray bmp_with_a_short_palette() {
  return bytes("424d 3e000000 0000 0000 3a000000 28000000 02000000 01000000 0100 0800"
               "00000000 04000000 00000000 00000000 01000000 00000000 03020100 00 c8 0000");
}

/// The longest information header, which says where opacity is: white, half of it.
QByteArray bmp_with_opacity() {
  return bytes("424d 8e000000 0000 0000 8a000000 7c000000 01000000 01000000 0100 2000 03000000 04000000") +
         QByteArray(16, '\0') + bytes("0000ff00 00ff0000 ff000000 000000ff") + QByteArray(68, '\0') + bytes("ffffff80");
}

TEST(PictureFileTest, reads_each_format_pixel_by_pixel) {
  const QImage image = four_colours();
  const char *four = "ff0000 00ff00 / 0000ff ffffff";
  struct Row {
    const char *what;
    QByteArray file;
    std::string pixels;
  };
  const Row rows[] = {
      {"PNG of 24 bits", encoded(image, "PNG"), four},
      {"PNG with a palette", encoded(image.convertToFormat(QImage::Format_Indexed8), "PNG"), four},
      {"PNG of 64 bits", encoded(image.convertToFormat(QImage::Format_RGBA64), "PNG"), four},
      {"PNG of greys", encoded(filled(1, 1, qRgb(9, 9, 9)).convertToFormat(QImage::Format_Grayscale8), "PNG"),
       "090909"},
      {"BMP of 24 bits", encoded(image, "BMP"), four},
      {"BMP with a palette", encoded(image.convertToFormat(QImage::Format_Indexed8), "BMP"), four},
      {"BMP of 32 bits", bmp_of_32_bits(), "010203 040506"},
      {"BMP with opacity", bmp_with_opacity(), "808080"},
      {"BMP whose palette is short", bmp_with_a_short_palette(), "010203 000000"},
      {"GIF", gif_2x1("00"), "ff0000 00ff00"},
      {"GIF with a transparent colour", gif_2x1("01"), "ff0000 000000"},
      {"JPEG", encoded(filled(1, 1, qRgb(255, 255, 255)), "JPEG"), "ffffff"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(pixels(read_picture(row.file)), row.pixels) << row.what;
}

TEST(PictureFileTest, the_halves_of_a_jpeg_stay_where_they_are) {
  for (const char *quality : {"JPEG", "JPG"}) {
    QImage image = filled(32, 16, qRgb(255, 255, 255));
    for (int y = 0; y < 16; ++y)
      for (int x = 0; x < 16; ++x)
        image.setPixel(x, y, qRgb(0, 0, 0));
    const auto picture = read_picture(encoded(image, quality));
    ASSERT_TRUE(picture);
    EXPECT_EQ(colour(picture->at(3, 8)), "000000");
    EXPECT_EQ(colour(picture->at(28, 8)), "ffffff");
  }
}

/// `jpeg` with an Exif segment that names the orientation, in either order of bytes.
QByteArray held_as(const QByteArray &jpeg, int orientation, bool is_big_endian) {
  QByteArray segment = is_big_endian ? bytes("ffe1 002e 457869660000 4d4d002a 00000008 0002"
                                             "0100 0003 00000001 0007 0000"
                                             "0112 0003 00000001 0000 0000 00000000")
                                     : bytes("ffe1 002e 457869660000 49492a00 08000000 0200"
                                             "0001 0300 01000000 0700 0000"
                                             "1201 0300 01000000 0000 0000 00000000");
  segment[is_big_endian ? 41 : 40] = static_cast<char>(orientation);
  return jpeg.left(2) + segment + jpeg.mid(2);
}

TEST(PictureFileTest, a_jpeg_is_shown_as_the_camera_has_seen_it) {
  QImage image = filled(32, 16, qRgb(0, 0, 0));
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 16; ++x)
      image.setPixel(x, y, qRgb(255, 255, 255));
  const QByteArray jpeg = encoded(image, "JPEG");
  struct Row {
    int orientation;
    QSize size;
    QPoint white; ///< the quarter that is white: 0 or 1 of 2 in each direction
  };
  const Row rows[] = {
      {1, {32, 16}, {0, 0}}, {2, {32, 16}, {1, 0}}, {3, {32, 16}, {1, 1}}, {4, {32, 16}, {0, 1}}, {5, {16, 32}, {0, 0}},
      {6, {16, 32}, {1, 0}}, {7, {16, 32}, {1, 1}}, {8, {16, 32}, {0, 1}}, {0, {32, 16}, {0, 0}}, {9, {32, 16}, {0, 0}},
  };
  for (const Row &row : rows) {
    for (const bool is_big_endian : {false, true}) {
      const QByteArray file = held_as(jpeg, row.orientation, is_big_endian);
      const auto size = size_of_picture(file);
      ASSERT_TRUE(size) << size.failure().text.toStdString();
      EXPECT_EQ(*size, row.size) << row.orientation;
      const auto picture = read_picture(file);
      ASSERT_TRUE(picture) << picture.failure().text.toStdString();
      ASSERT_EQ(picture->size(), row.size) << row.orientation;
      for (int down = 0; down < 2; ++down)
        for (int right = 0; right < 2; ++right)
          EXPECT_EQ(picture->at(row.size.width() * (2 * right + 1) / 4, row.size.height() * (2 * down + 1) / 4).red >
                        127,
                    row.white == QPoint(right, down))
              << row.orientation << ' ' << right << ' ' << down;
    }
  }
}

TEST(PictureFileTest, a_jpeg_with_more_codes_than_a_table_holds_is_not_read) {
  const QByteArray jpeg = encoded(filled(8, 8, 0), "JPEG");
  struct Row {
    const char *table; ///< after "ff c4"
    int values;
    bool is_read;
  };
  const Row rows[] = {
      // 255 codes of 16 bits in table 3, which the picture does not use.
      {"0112 13 00000000 00000000 00000000 000000ff", 255, true},
      {"0113 13 00000000 00000000 00000000 00008080", 256, false},
      {"1003 13 ffffffff ffffffff ffffffff ffffffff", 4080, false},
      // It says that it is longer than its segment.
      {"0013 13 00000000 00000000 00000000 000000ff", 0, false},
  };
  for (const Row &row : rows) {
    const QByteArray file =
        jpeg.left(2) + bytes("ffc4") + bytes(row.table) + QByteArray(row.values, '\x01') + jpeg.mid(2);
    const auto picture = read_picture(file);
    EXPECT_EQ(static_cast<bool>(picture), row.is_read) << row.table;
    if (!picture) {
      EXPECT_EQ(picture.failure().text.toStdString(),
                "not a picture that can be read (JPEG: a table of codes is damaged)");
    }
  }
}

TEST(PictureFileTest, a_file_that_is_cut_short_anywhere_is_not_read) {
  struct Row {
    QByteArray file;
    int needless; ///< bytes at the end that mean nothing for the picture
  };
  QImage image = filled(20, 20, qRgb(1, 200, 3));
  for (int i = 0; i < 20; ++i)
    image.setPixel(i, i, qRgb(i, 255 - i, 17 * i % 256));
  const Row rows[] = {
      {encoded(image, "PNG"), 0},
      {encoded(image.convertToFormat(QImage::Format_Indexed8), "PNG"), 0},
      {encoded(image, "BMP"), 0},
      {encoded(image.convertToFormat(QImage::Format_Indexed8), "BMP"), 0},
      {encoded(image, "JPEG"), 0},
      // The mark of the end.
      {gif_2x1("00"), 1},
  };
  for (const Row &row : rows) {
    ASSERT_TRUE(read_picture(row.file)) << row.file.left(4).constData();
    const int needed = static_cast<int>(row.file.size()) - row.needless;
    EXPECT_TRUE(read_picture(row.file.left(needed)));
    for (int size = 0; size < needed; ++size) {
      const auto picture = read_picture(row.file.left(size));
      ASSERT_FALSE(picture) << size << " bytes of " << row.file.left(4).constData();
      const QString text = picture.failure().text;
      EXPECT_TRUE(text == QLatin1String("the picture is cut short") ||
                  text.startsWith(QLatin1String("not a picture that can be read (")))
          << text.toStdString();
    }
    EXPECT_EQ(pixels(read_picture(row.file.left(needed - 1))), "the picture is cut short");
  }
}

/// A PNG of that size of which nothing but its first block is there.
QByteArray png_header(const char *width, const char *height) {
  return bytes("89504e470d0a1a0a 0000000d 49484452") + bytes(width) + bytes(height) + bytes("08 02 00 00 00 00000000");
}

QByteArray bmp_header(const char *width, const char *height) {
  return bytes("424d 3e000000 0000 0000 36000000 28000000") + bytes(width) + bytes(height) +
         bytes("0100 1800 00000000 08000000 00000000 00000000 00000000 00000000 000000 00000000 00");
}

TEST(PictureFileTest, refuses_what_is_damaged_or_too_large) {
  const char *unreadable = "not a picture that can be read (";
  QByteArray bad_data = encoded(four_colours(), "PNG");
  const int data = static_cast<int>(bad_data.indexOf("IDAT")) + 4;
  bad_data.replace(data, 4, "\x55\x55\x55\x55");
  struct Row {
    const char *what;
    QByteArray file;
    std::string beginning; ///< of the text
  };
  const Row rows[] = {
      {"nothing", "", "not a picture that can be read (neither PNG nor JPEG, BMP or GIF)"},
      {"a text", "hello, this is a text and no picture", "not a picture that can be read (neither PNG nor JPEG"},
      {"another format", "P6\n1 1\n255\nabc", "not a picture that can be read (neither PNG nor JPEG, BMP or GIF)"},
      {"PNG of 0 columns", png_header("00000000", "00000001"), unreadable},
      {"PNG of 0 rows", png_header("00000001", "00000000"), unreadable},
      {"PNG of 32769 columns", png_header("00008001", "00000001"), unreadable},
      {"PNG of 2147483647 rows", png_header("00000001", "7fffffff"), unreadable},
      {"PNG of 32768 x 1025", png_header("00008000", "00000401"),
       "a picture of 32768x1025 is too large; it may have 33554432 pixels, and 32768 on each side"},
      {"PNG of 32768 x 1024, no data", png_header("00008000", "00000400"), "the picture is cut short"},
      {"BMP of 0 columns", bmp_header("00000000", "01000000"), unreadable},
      {"BMP of 0 rows", bmp_header("01000000", "00000000"), unreadable},
      {"BMP of -1 columns", bmp_header("ffffffff", "01000000"), unreadable},
      {"BMP of 0 x -2147483648", bmp_header("00000000", "00000080"), unreadable},
      {"BMP of 1 x -2147483648", bmp_header("01000000", "00000080"), "the picture is cut short"},
      {"GIF of 0 columns", bytes("474946383961 0000 0100 00 00 00 2c 0000 0000 0000 0100 00 02 02 440a 00 3b"),
       unreadable},
      {"PNG whose data make no sense", bad_data, unreadable},
      {"JPEG that ends at once", bytes("ffd8 ffd9"), unreadable},
      {"JPEG without a size", bytes("ffd8 ffda 0008 01 01 00 00 3f 00 ffd9"), unreadable},
  };
  for (const Row &row : rows) {
    const std::string text = pixels(read_picture(row.file));
    EXPECT_EQ(text.substr(0, row.beginning.size()), row.beginning) << row.what;
    EXPECT_EQ(text.find('\n'), std::string::npos);
  }
}

/// A PNG of 1 x 1 whose data unpack to `count` times 258 zeros: one literal, then the longest run again and again.
QByteArray png_that_unpacks_to(int count) {
  std::string data("\x78\x01", 2);
  unsigned buffer = 0;
  int filled_bits = 0;
  // Packed data fill each byte from its lowest bit.
  const auto put = [&](unsigned value, int bits) {
    buffer |= value << filled_bits;
    for (filled_bits += bits; filled_bits >= 8; filled_bits -= 8, buffer >>= 8)
      data += static_cast<char>(buffer & 0xFF);
  };
  put(3, 3); // the last block, with fixed codes
  put(0x0C, 8);
  for (int i = 0; i < count; ++i)
    put(0xA3, 8 + 5); // length 258, distance 1
  put(0, 7 + 7);
  data += std::string(4, '\0');
  QByteArray file = png_header("00000001", "00000001");
  const auto size = static_cast<unsigned>(data.size());
  for (int shift = 24; shift >= 0; shift -= 8)
    file += static_cast<char>(size >> shift & 0xFF);
  return file + "IDAT" + QByteArray::fromStdString(data) + bytes("00000000 00000000 49454e44 ae426082");
}

TEST(PictureFileTest, tells_the_size_before_the_pixels_are_there) {
  const QImage image = filled(20, 10, qRgb(1, 2, 3));
  struct Row {
    QByteArray file;
    QSize size;
  };
  const Row rows[] = {{encoded(image, "PNG").left(33), {20, 10}}, // its head alone
                      {encoded(image, "BMP"), {20, 10}},
                      {encoded(image, "JPEG"), {20, 10}},
                      {gif_2x1("00"), {2, 1}}};
  for (const Row &row : rows) {
    const auto size = size_of_picture(row.file);
    ASSERT_TRUE(size) << size.failure().text.toStdString();
    EXPECT_EQ(*size, row.size);
  }
  for (const QByteArray &file :
       {QByteArray("no picture"), encoded(image, "PNG").left(20), encoded(image, "BMP").left(60)}) {
    const auto size = size_of_picture(file);
    const auto picture = read_picture(file);
    ASSERT_FALSE(size);
    ASSERT_FALSE(picture);
    EXPECT_EQ(size.failure().text.toStdString(), picture.failure().text.toStdString());
  }
}

TEST(PictureFileTest, a_small_file_cannot_take_much_memory) {
  EXPECT_EQ(pixels(read_picture(png_that_unpacks_to(1))), "000000");
  EXPECT_EQ(pixels(read_picture(png_that_unpacks_to(100000))).substr(0, 37), "not a picture that can be read (PNG: ");
}

TEST(PictureFileTest, a_file_that_cannot_be_opened_is_a_failure) {
  EXPECT_EQ(pixels(read_picture_file(QStringLiteral("/no/such.png"))),
            "not a picture that can be read (No such file or directory)");
}

TEST(PictureFileTest, what_it_writes_is_read_as_the_same_pixels) {
  Picture picture({3, 2}, {1, 2, 3});
  picture.set(2, 0, {255, 254, 253});
  picture.set(0, 1, {0, 128, 0});
  const QByteArray file = write_png(picture);
  const QImage image = QImage::fromData(file, "PNG");
  ASSERT_EQ(image.size(), QSize(3, 2));
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 3; ++x)
      EXPECT_EQ(image.pixel(x, y), qRgb(picture.at(x, y).red, picture.at(x, y).green, picture.at(x, y).blue));
}

TEST(PictureFileTest, a_picture_of_one_colour_keeps_it_in_any_size) {
  for (const QSize from : {QSize(1, 1), QSize(7, 3), QSize(300, 200)}) {
    for (const QSize to : {QSize(1, 1), QSize(128, 128), QSize(11, 64), QSize(500, 2)}) {
      const Picture picture = scaled(Picture(from, {10, 200, 77}), to);
      ASSERT_EQ(picture.size(), to);
      for (int y = 0; y < to.height(); ++y)
        for (int x = 0; x < to.width(); ++x)
          ASSERT_EQ(colour(picture.at(x, y)), "0ac84d");
    }
  }
}

TEST(PictureFileTest, halves_stay_halves_when_they_are_scaled) {
  for (const QSize to : {QSize(128, 4), QSize(16, 16), QSize(1024, 3)}) {
    Picture halves({256, 8}, {255, 255, 255});
    for (int y = 0; y < 8; ++y)
      for (int x = 0; x < 128; ++x)
        halves.set(x, y, {0, 0, 0});
    const Picture picture = scaled(halves, to);
    // Some columns beside the border may be grey.
    const int border = to.width() / 2;
    const int grey = std::max(2, to.width() / 64);
    for (int y = 0; y < to.height(); ++y) {
      for (int x = 0; x < border - grey; ++x)
        ASSERT_EQ(colour(picture.at(x, y)), "000000") << x;
      for (int x = border + grey; x < to.width(); ++x)
        ASSERT_EQ(colour(picture.at(x, y)), "ffffff") << x;
    }
  }
}

TEST(PictureFileTest, fine_stripes_become_grey_when_they_are_made_smaller) {
  Picture stripes({256, 4});
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 256; x += 2)
      stripes.set(x, y, {255, 255, 255});
  const Picture picture = scaled(stripes, {32, 4});
  for (int x = 1; x < 31; ++x)
    EXPECT_NEAR(picture.at(x, 1).green, 128, 12) << x;
}

} // namespace
} // namespace buttondriver::buttonctl
