// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/topic_commands.h"
#include "pictures.h"

#include <gtest/gtest.h>

#include <string>

namespace buttondriver::bridge {
namespace {

using test::bytes_of;
using test::picture_file;
using Kind = Target::Kind;

constexpr int head_bytes = 24; // with the length

const QByteArray four_pixels = bytes_of(test::bmp_of_four_pixels);
const std::string no_picture = "the payload must be a BMP or PNG file: ";

TEST(PicturesTest, that_the_panel_understands_go_byte_for_byte) {
  const QByteArray with_more = four_pixels + "more";
  const Outcome<Command> command = command_of("screen/0/image/126/126", with_more);
  ASSERT_TRUE(command);
  EXPECT_EQ(command->frame.mid(head_bytes), with_more);
}

TEST(PicturesTest, of_other_forms_are_converted) {
  // Four pixels of (1, 2, 3), as the panel takes them: blue, green, red.
  const QByteArray expected =
      bytes_of("424d 46000000 0000 0000 36000000 28000000 02000000 02000000 0100 1800"
               "00000000 10000000 130b0000 130b0000 00000000 00000000 030201 030201 0000 030201 030201 0000");
  QByteArray top_down = expected;
  top_down.replace(22, 4, bytes_of("feffffff"));
  const QByteArray files[] = {picture_file(2, 2, "PNG"), top_down};
  for (const QByteArray &file : files) {
    const Outcome<Command> command = command_of("screen/0/image", file);
    ASSERT_TRUE(command) << command.failure().text.toStdString();
    EXPECT_EQ(command->frame.mid(head_bytes).toHex(), expected.toHex());
  }
}

TEST(PicturesTest, say_which_part_of_the_screen_they_cover) {
  struct Row {
    const char *tail;
    int width;
    int height;
    Target target;
  };
  const Row rows[] = {
      {"screen/0/image", 128, 128, {Kind::screen, 0, -1, false, {}}},
      {"screen/all/image/0/0", 128, 128, {Kind::screen, -1, -1, false, {}}},
      {"screen/0/image", 127, 128, {Kind::area, 0, -1, false, {0, 0, 127, 128}}},
      {"screen/0/image", 128, 127, {Kind::area, 0, -1, false, {0, 0, 128, 127}}},
      {"screen/0/image/1/0", 127, 128, {Kind::area, 0, -1, false, {1, 0, 127, 128}}},
      {"screen/2/image/0/127", 1, 1, {Kind::area, 2, -1, false, {0, 127, 1, 1}}},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.tail);
    for (const char *format : {"PNG", "BMP"}) {
      const Outcome<Command> command = command_of(row.tail, picture_file(row.width, row.height, format));
      ASSERT_TRUE(command) << command.failure().text.toStdString();
      EXPECT_TRUE(command->target == row.target);
    }
  }
}

TEST(PicturesTest, that_do_not_fit_are_refused_with_the_room_that_there_is) {
  struct Row {
    const char *tail;
    int width;
    int height;
    const char *text;
  };
  const Row rows[] = {
      {"screen/0/image", 129, 1,
       "a picture of 129x1 at 0,0 sticks out of the screen; there it may have 128x128 pixels"},
      {"screen/0/image", 1, 129,
       "a picture of 1x129 at 0,0 sticks out of the screen; there it may have 128x128 pixels"},
      {"screen/0/image/127/0", 2, 1,
       "a picture of 2x1 at 127,0 sticks out of the screen; there it may have 1x128 pixels"},
      {"screen/0/image/3/100", 10, 29,
       "a picture of 10x29 at 3,100 sticks out of the screen; there it may have 125x28 pixels"},
  };
  for (const Row &row : rows)
    for (const char *format : {"PNG", "BMP"}) {
      const Outcome<Command> command = command_of(row.tail, picture_file(row.width, row.height, format));
      ASSERT_FALSE(command) << row.tail;
      EXPECT_EQ(command.failure().text.toStdString(), row.text);
    }
}

/// A PNG file of which nothing is there but the size.
QByteArray png_head(const char *width, const char *height) {
  return bytes_of("89504e47 0d0a1a0a 0000000d 49484452") + bytes_of(width) + bytes_of(height) +
         bytes_of("08 02 00 00 00 00000000");
}

TEST(PicturesTest, that_do_not_fit_are_refused_before_they_are_decompressed) {
  const Outcome<Command> command = command_of("screen/0/image", png_head("00004e20", "00000400"));
  ASSERT_FALSE(command);
  EXPECT_EQ(command.failure().text.toStdString(),
            "a picture of 20000x1024 at 0,0 sticks out of the screen; there it may have 128x128 pixels");
}

TEST(PicturesTest, that_are_none_are_refused) {
  struct Row {
    QByteArray payload;
    std::string text;
  };
  const Row rows[] = {
      {"on", no_picture + "it begins as neither of them"},
      {picture_file(2, 2, "JPEG"), no_picture + "it begins as neither of them"},
      {bytes_of("474946383961 0200 0100 80 00 00 ff0000 00ff00 2c 0000 0000 0200 0100 00 02 02 440a 00 3b"),
       no_picture + "it begins as neither of them"},
      {four_pixels.left(60), no_picture + "the picture is cut short"},
      {png_head("00000001", "00000001"), no_picture + "the picture is cut short"},
      {png_head("00000000", "00000001"),
       no_picture + "not a picture that can be read (PNG: Image not of any known type, or corrupt)"},
      {QByteArray(160 * 1024 + 1, 'x'), "the payload has 163841 bytes; here it may have 163840 at most"},
  };
  for (const Row &row : rows) {
    const Outcome<Command> command = command_of("screen/0/image", row.payload);
    ASSERT_FALSE(command);
    EXPECT_EQ(command.failure().text.toStdString(), row.text);
  }
}

TEST(PicturesTest, of_a_screen_may_be_any_png_of_its_size) {
  QImage noise(128, 128, QImage::Format_RGBA64);
  quint64 state = 1;
  for (int y = 0; y < 128; ++y)
    for (int x = 0; x < 128; ++x) {
      state = state * 6364136223846793005ULL + 1442695040888963407ULL;
      noise.setPixelColor(x, y, QColor::fromRgba64(QRgba64::fromRgba64(state ^ state >> 29)));
    }
  QByteArray file;
  QBuffer buffer(&file);
  buffer.open(QIODevice::WriteOnly);
  noise.save(&buffer, "PNG", 0);
  ASSERT_GT(file.size(), 120 * 1024) << "nothing of it can be compressed";
  EXPECT_TRUE(command_of("screen/0/image", file));
}

} // namespace
} // namespace buttondriver::bridge
