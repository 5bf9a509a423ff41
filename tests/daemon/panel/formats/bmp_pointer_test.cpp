// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/bmp.h"

#include "bmp_file.h"
#include "daemon/panel/panel_test.h"
#include "panel/tft/image.h"

#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace buttondriver::panel {
namespace {

/// Bytes with no memory after them: to read one more ends the process.
class ExactBytes {
public:
  explicit ExactBytes(const std::string &bytes) {
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t pages = (bytes.size() + page - 1) / page;
    _size = (pages + 1) * page;
    void *const memory = ::mmap(nullptr, _size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    _memory = memory;
    ::mprotect(static_cast<char *>(memory) + pages * page, page, PROT_NONE);
    _bytes = static_cast<std::uint8_t *>(memory) + pages * page - bytes.size();
    std::memcpy(_bytes, bytes.data(), bytes.size());
  }
  ~ExactBytes() { ::munmap(_memory, _size); }
  ExactBytes(const ExactBytes &) = delete;
  ExactBytes &operator=(const ExactBytes &) = delete;

  const std::uint8_t *get() const { return _bytes; }

private:
  void *_memory = nullptr;
  std::size_t _size = 0;
  std::uint8_t *_bytes = nullptr;
};

constexpr const std::uint8_t *no_bytes = nullptr;

BmpFile grey(int width, int height) {
  BmpFile file;
  file.width = width;
  file.height = height;
  // Without the padding of the last row, which nobody has to read.
  file.pixels.assign(static_cast<std::size_t>((width * 3 + width % 4) * height - width % 4), '\x80');
  return file;
}

struct Row {
  const char *condition;
  BmpFile file;
  std::size_t length;  // bytes of the file that are there
  std::size_t claimed; // bytes that count
};

void PrintTo(const Row &row, std::ostream *out) { *out << row.condition; }

class ClaimedBytesTest : public testing::TestWithParam<Row> {};

TEST_P(ClaimedBytesTest, are_those_that_the_header_claims) {
  const ExactBytes bytes(GetParam().file.bytes().substr(0, GetParam().length));
  const ByteView claimed = bmp_claimed_bytes(bytes.get());
  EXPECT_EQ(claimed.data(), bytes.get());
  EXPECT_EQ(claimed.size(), GetParam().claimed);
}

BmpFile changed(BmpFile file, void (*change)(BmpFile &)) {
  change(file);
  return file;
}

void no_rows(BmpFile &file) {
  file.height = 0;
  file.pixel_offset = 0x7FFFFFFF;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ClaimedBytesTest,
    testing::Values(
        Row{"bottom-up", grey(3, 2), 75, 54 + 12 + 9},
        Row{"top-down", changed(grey(3, 2), [](BmpFile &file) { file.height = -2; }), 75, 54 + 12 + 9},
        Row{"more than claimed", grey(4, 1), 66, 54 + 12},
        Row{"pixels further on", changed(grey(1, 1), [](BmpFile &file) { file.pixel_offset = 1000; }), 57, 1003},
        Row{"pixels within the header", changed(grey(1, 1), [](BmpFile &file) { file.pixel_offset = 0; }), 54, 54},
        Row{"pixels before the file", changed(grey(1, 1), [](BmpFile &file) { file.pixel_offset = 0xFFFFFF00; }), 54,
            54},
        Row{"no pixels", changed(grey(0, 5), [](BmpFile &file) { file.pixel_offset = 0x7FFFFFFF; }), 54, 54},
        Row{"no rows", changed(grey(5, 1), no_rows), 54, 54},
        Row{"wrong signature", changed(grey(1, 1), [](BmpFile &file) { file.signature = "AA"; }), 2, 2},
        Row{"wrong header size", changed(grey(1, 1), [](BmpFile &file) { file.header_size = 12; }), 18, 18},
        Row{"wrong planes", changed(grey(1, 1), [](BmpFile &file) { file.planes = 2; }), 28, 28},
        Row{"wrong depth", changed(grey(1, 1), [](BmpFile &file) { file.bits_per_pixel = 16; }), 30, 30},
        Row{"too many pixels", changed(grey(1, 1), [](BmpFile &file) { file.width = 67108865; }), 30, 30},
        Row{"negative width", changed(grey(1, 1), [](BmpFile &file) { file.width = -1; }), 30, 30}));

TEST(BmpPointerTest, picture_is_decoded_up_to_its_last_pixel) {
  const ExactBytes bytes(grey(3, 2).bytes());
  std::int32_t width = 0;
  std::int32_t height = 0;
  PixelArray pixels;
  EXPECT_EQ(bmp_decode_24(bytes.get(), &width, &height, &pixels), 0);
  EXPECT_EQ(width, 3);
  EXPECT_EQ(height, 2);
  EXPECT_THAT(std::vector<std::uint16_t>(pixels.get(), pixels.get() + 6), testing::Each(0x8410));
}

TEST(BmpPointerTest, header_is_checked_copied_and_printed_from_54_bytes) {
  const std::string header = grey(0, 0).bytes().substr(0, 54);
  const ExactBytes bytes(header);
  BmpHeader copy;
  copy.fill(0xEE);
  EXPECT_EQ(bmp_check_header(bytes.get(), &copy), 0);
  EXPECT_EQ(std::memcmp(copy.data(), header.data(), copy.size()), 0);
  EXPECT_EQ(output_of([&] { bmp_print_header(bytes.get()); }), output_of([&] { bmp_print_header(view(header)); }));
}

TEST(BmpPointerTest, header_is_refused_by_what_it_begins_with) {
  const std::pair<const char *, const char *> rows[] = {{"AA", "Invalid BMP Signature ('A', 'A')!  Exiting.\n"},
                                                        {"BMxxxxxxxxxxxxxxxx", "DIB Header Size is invalid. Exiting."}};
  for (const auto &row : rows) {
    const ExactBytes bytes(row.first);
    int result = 0;
    EXPECT_EQ(output_of([&] { result = bmp_check_header(bytes.get(), nullptr); }), row.second);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(output_of([&] { bmp_print_header(bytes.get()); }), row.second);
    EXPECT_EQ(output_of([&] { result = tft_draw_image(0, 0, 0, bytes.get()); }), row.second);
    EXPECT_EQ(result, -1);
  }
}

TEST(BmpPointerTest, null_pointers_are_reported) {
  const ExactBytes bytes(grey(1, 1).bytes());
  std::int32_t size = 7;
  PixelArray pixels;
  int result = 0;
  EXPECT_EQ(output_of([&] { result = bmp_check_header(no_bytes, nullptr); }), "BMP Data pointer is NULL! Exiting.");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(output_of([&] { result = bmp_decode_24(no_bytes, &size, &size, &pixels); }),
            "BMP Data pointer is NULL! Exiting.");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(output_of([&] { result = bmp_decode_24(no_bytes, nullptr, nullptr, nullptr); }),
            "BMP Data pointer is NULL! Exiting.");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(output_of([&] { result = bmp_decode_24(bytes.get(), nullptr, &size, &pixels); }),
            "One of the output pointers is NULL!");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(output_of([] { bmp_print_header(no_bytes); }), "BMP Data pointer is NULL! Exiting.");
  EXPECT_EQ(output_of([&] { result = tft_draw_image(9, 0, 0, no_bytes); }), "Input parameter 'data' pointer is NULL.");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(size, 7);
}

class DrawnPointerTest : public PanelTest {};

TEST_F(DrawnPointerTest, picture_is_drawn_as_the_same_bytes_with_a_length) {
  const std::string file = grey(40, 24).bytes();
  const ExactBytes bytes(file);
  EXPECT_EQ(tft_draw_image(1, 10, 20, view(file)), 0);
  const Lines expected = device.takeLines();
  EXPECT_EQ(tft_draw_image(1, 10, 20, bytes.get()), 0);
  EXPECT_EQ(device.takeLines(), expected);
  EXPECT_THAT(expected, testing::Contains("w 0a05 960 8410 * 960"));
}

} // namespace
} // namespace buttondriver::panel
