// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/image.h"

#include "daemon/panel/formats/bmp_file.h"
#include "daemon/panel/panel_test.h"

#include <limits>

namespace buttondriver::panel {
namespace {

using testing::IsEmpty;

class ImageTest : public PanelTest {};

/// A picture of alike pixels, 0x8410.
BmpFile grey(int width, int height) {
  BmpFile file;
  file.width = width;
  file.height = height;
  file.pixels.assign(static_cast<std::size_t>(width * 3 + width % 4) * static_cast<std::size_t>(height), '\x80');
  return file;
}

int draw(int screen, int x, int y, const BmpFile &file) {
  const std::string bytes = file.bytes();
  return tft_draw_image(screen, x, y, view(bytes));
}

/// All that is written to the ports of screen 1 and then to all.
Lines on_screen_1(const std::string &rows, const std::string &columns, const std::string &pixels) {
  return Lines{"w 0a04 1 0000", "w 0a04 1 4500",       "w 0a05 1 " + rows, "w 0a04 1 0000",
               "w 0a04 1 4400", "w 0a05 1 " + columns, "w 0a04 1 0000",    "w 0a04 1 2100",
               "w 0a05 1 0000", "w 0a04 1 0000",       "w 0a04 1 2200",    "w 0a05 " + pixels} +
         whole_window;
}

TEST_F(ImageTest, opens_a_window_of_its_size_and_sends_its_pixels) {
  EXPECT_EQ(draw(1, 10, 20, grey(40, 24)), 0);
  EXPECT_EQ(device.takeLines(), on_screen_1("2c15", "350e", "960 8410 * 960"));
}

TEST_F(ImageTest, goes_to_the_ports_of_its_screen) {
  struct {
    int screen;
    const char *index_port;
    const char *data_port;
  } const rows[] = {{0, "w 0a02", "w 0a03"}, {2, "w 0a08", "w 0a09"}, {-1, "w 0a0e", "w 0a0f"}};
  for (const auto &row : rows) {
    const std::string index = row.index_port;
    const std::string data = row.data_port;
    EXPECT_EQ(draw(row.screen, 0, 0, grey(2, 3)), 0);
    EXPECT_EQ(device.takeLines(), (Lines{index + " 1 0000", index + " 1 4500", data + " 1 0301", index + " 1 0000",
                                         index + " 1 4400", data + " 1 0504", index + " 1 0000", index + " 1 2100",
                                         data + " 1 0000", index + " 1 0000", index + " 1 2200", data + " 6 8410 * 6"} +
                                   whole_window));
  }
}

TEST_F(ImageTest, window_stays_on_the_glass_and_all_pixels_are_sent) {
  constexpr int highest = std::numeric_limits<int>::max();
  constexpr int lowest = std::numeric_limits<int>::min();
  struct {
    int x;
    int y;
    const char *rows;
    const char *columns;
  } const rows[] = {{0, 0, "1801", "2b04"},     {88, 104, "8069", "835c"},          {89, 105, "806a", "835d"},
                    {-5, -7, "1101", "2604"},   {-100, -100, "b401", "c704"},       {200, 200, "80c9", "83cc"},
                    {127, 127, "8080", "8383"}, {highest, highest, "8000", "8303"}, {lowest, lowest, "1801", "2b04"}};
  for (const auto &row : rows) {
    EXPECT_EQ(draw(1, row.x, row.y, grey(40, 24)), 0);
    EXPECT_EQ(device.takeLines(), on_screen_1(row.rows, row.columns, "960 8410 * 960")) << row.x << ", " << row.y;
  }
}

TEST_F(ImageTest, picture_of_the_screen_s_size_fills_it) {
  EXPECT_EQ(draw(1, 0, 0, grey(128, 128)), 0);
  EXPECT_EQ(device.takeLines(), on_screen_1("8001", "8304", "16384 8410 * 16384"));
}

TEST_F(ImageTest, picture_of_65536_pixels_sends_none) {
  EXPECT_EQ(draw(1, 0, 0, grey(256, 256)), 0);
  EXPECT_EQ(device.takeLines(), on_screen_1("8001", "8304", "0"));
}

TEST_F(ImageTest, picture_of_65535_pixels_sends_them_all) {
  EXPECT_EQ(draw(1, 0, 0, grey(255, 257)), 0);
  EXPECT_EQ(device.takeLines(), on_screen_1("8001", "8304", "65535 8410 * 65535"));
}

TEST_F(ImageTest, larger_picture_sends_its_first_pixels_from_the_top) {
  BmpFile file = grey(300, 300); // 90000 pixels, 24464 above 65536: 81 rows and 164 pixels
  const std::size_t stride = 900;
  file.pixels.replace(299 * stride, stride, stride, '\xFF');        // the topmost row: white
  file.pixels.replace((299 - 81) * stride, 164 * 3, 164 * 3, '\0'); // all that is sent of row 81: black
  EXPECT_EQ(draw(1, 0, 0, file), 0);
  const auto transfers = device.take();
  ASSERT_EQ(transfers.size(), 18U);
  const std::vector<std::uint16_t> &words = transfers[11].words;
  ASSERT_EQ(words.size(), 24464U);
  for (std::size_t i = 0; i < words.size(); ++i)
    ASSERT_EQ(words[i], i < 300 ? 0xFFFF : i < 24300 ? 0x8410 : 0x0000) << i;
}

TEST_F(ImageTest, empty_picture_sends_no_pixels) {
  EXPECT_EQ(draw(1, 10, 20, grey(0, 0)), 0);
  EXPECT_EQ(device.takeLines(), on_screen_1("1415", "0d0e", "0"));
}

TEST_F(ImageTest, picture_stored_top_down_is_drawn_upright) {
  BmpFile file = grey(1, 2);
  file.pixels = std::string(3, '\xFF') + std::string(1, '\0') + std::string(4, '\0');
  EXPECT_EQ(draw(1, 0, 0, file), 0);
  EXPECT_EQ(device.takeLines(), on_screen_1("0201", "0404", "2 0000 ffff"));
  file.height = -2;
  EXPECT_EQ(draw(1, 0, 0, file), 0);
  EXPECT_EQ(device.takeLines(), on_screen_1("0201", "0404", "2 ffff 0000"));
}

TEST_F(ImageTest, unreadable_picture_is_reported_and_writes_nothing) {
  BmpFile shallow = grey(4, 4);
  shallow.bits_per_pixel = 16;
  BmpFile other_file = grey(4, 4);
  other_file.signature = "AA";
  BmpFile huge = grey(4, 4);
  huge.width = 8193;
  huge.height = 8192;
  const std::pair<BmpFile, const char *> rows[] = {{shallow, "Only 24-bit depth BMP's are supported at this time."},
                                                   {other_file, "Invalid BMP Signature ('A', 'A')!  Exiting.\n"},
                                                   {huge, "Could not allocate array for pixel data."}};
  for (const auto &row : rows) {
    int result = 0;
    EXPECT_EQ(output_of([&] { result = draw(1, 0, 0, row.first); }), row.second);
    EXPECT_EQ(result, -1);
    EXPECT_THAT(device.takeLines(), IsEmpty());
  }
}

TEST_F(ImageTest, missing_bytes_are_reported_before_a_wrong_screen) {
  int result = 0;
  EXPECT_EQ(output_of([&] { result = tft_draw_image(9, 0, 0, {}); }), "Input parameter 'data' pointer is NULL.");
  EXPECT_EQ(result, -1);
  EXPECT_THAT(device.takeLines(), IsEmpty());
}

TEST_F(ImageTest, wrong_screen_is_reported_before_the_picture_is_read) {
  for (const int screen : {3, -2}) {
    int result = 0;
    EXPECT_EQ(output_of([&] { result = tft_draw_image(screen, 0, 0, ByteView("AA", 2)); }),
              "Invalid screen ID " + std::to_string(screen) + ".\n");
    EXPECT_EQ(result, -1);
  }
  EXPECT_THAT(device.takeLines(), IsEmpty());
}

} // namespace
} // namespace buttondriver::panel
