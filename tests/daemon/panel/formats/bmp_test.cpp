// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/bmp.h"

#include "bmp_file.h"
#include "daemon/panel/library_calls.h"
#include "daemon/panel/panel_test.h"
#include "support/hex.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <sys/mman.h>

namespace buttondriver::panel {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr std::size_t no_limit = std::numeric_limits<std::size_t>::max();

struct Decoded {
  int result = 99;
  std::int32_t width = -99;
  std::int32_t height = -99;
  std::vector<std::uint16_t> pixels;
  bool has_array = false;
  std::string output;
};

Decoded decode(ByteView bmp, std::size_t limit = no_limit) {
  Decoded decoded;
  PixelArray array;
  decoded.output =
      output_of([&] { decoded.result = bmp_decode_24(bmp, &decoded.width, &decoded.height, &array, limit); });
  decoded.has_array = array != nullptr;
  if (decoded.result == 0) {
    const auto count = std::min<std::size_t>(limit, static_cast<std::size_t>(decoded.width) *
                                                        static_cast<std::size_t>(decoded.height));
    decoded.pixels.assign(array.get(), array.get() + count);
  }
  return decoded;
}

Decoded decode(const BmpFile &file, std::size_t limit = no_limit) { return decode(view(file.bytes()), limit); }

void expect_failure(const Decoded &decoded, const std::string &output) {
  EXPECT_EQ(decoded.output, output);
  EXPECT_EQ(decoded.result, -1);
  EXPECT_EQ(decoded.width, -1);
  EXPECT_EQ(decoded.height, -1);
  EXPECT_FALSE(decoded.has_array);
}

constexpr const char *no_memory = "Could not allocate array for pixel data.";

/// Blue, green and red; white, black and blue-green-red of 0x56, 0x34, 0x12. Three padding bytes a row.
BmpFile three_by_two() {
  BmpFile file;
  file.width = 3;
  file.height = 2;
  file.pixels = test::from_hex("ff0000 00ff00 0000ff aaaaaa"
                               "ffffff 000000 563412 bbbbbb");
  return file;
}

TEST(BmpTest, rows_are_stored_bottom_up_and_padded) {
  const Decoded decoded = decode(three_by_two());
  EXPECT_EQ(decoded.output, "");
  EXPECT_EQ(decoded.result, 0);
  EXPECT_EQ(decoded.width, 3);
  EXPECT_EQ(decoded.height, 2);
  EXPECT_THAT(decoded.pixels, ElementsAre(0xFFFF, 0x0000, 0x11AA, 0x001F, 0x07E0, 0xF800));
}

TEST(BmpTest, negative_height_is_stored_top_down) {
  BmpFile file = three_by_two();
  file.height = -2;
  const Decoded decoded = decode(file);
  EXPECT_EQ(decoded.result, 0);
  EXPECT_EQ(decoded.height, 2);
  EXPECT_THAT(decoded.pixels, ElementsAre(0x001F, 0x07E0, 0xF800, 0xFFFF, 0x0000, 0x11AA));
}

TEST(BmpTest, padding_is_the_width_modulo_4) {
  for (const int width : {1, 2, 3, 4, 5}) {
    BmpFile file;
    file.width = width;
    file.height = 2;
    const std::string row(static_cast<std::size_t>(width) * 3, '\xFF');
    file.pixels = row + std::string(static_cast<std::size_t>(width % 4), '\x55') + row;
    EXPECT_THAT(decode(file).pixels, testing::AllOf(testing::SizeIs(2 * width), testing::Each(0xFFFF))) << width;
  }
}

TEST(BmpTest, pixels_start_where_the_header_says) {
  BmpFile file;
  file.pixel_offset = 57;
  file.pixels = test::from_hex("111111 0000ff");
  EXPECT_THAT(decode(file).pixels, ElementsAre(0xF800));
  file.pixel_offset = 0; // the signature and the lowest byte of the file size: 'B', 'M', 0x44
  EXPECT_THAT(decode(file).pixels, ElementsAre(0x4268));
}

TEST(BmpTest, compression_is_not_looked_at) {
  BmpFile file = three_by_two();
  file.compression = 1;
  EXPECT_THAT(decode(file).pixels, ElementsAre(0xFFFF, 0x0000, 0x11AA, 0x001F, 0x07E0, 0xF800));
}

TEST(BmpTest, bytes_past_the_end_read_as_zero) {
  BmpFile file = three_by_two();
  file.pixels.resize(13); // the first stored row, its padding, and one byte of the second
  EXPECT_THAT(decode(file).pixels, ElementsAre(0x001F, 0x0000, 0x0000, 0x001F, 0x07E0, 0xF800));
  for (const std::uint32_t offset : {78U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFF00U}) {
    file.pixel_offset = offset;
    EXPECT_THAT(decode(file).pixels, ElementsAre(0, 0, 0, 0, 0, 0)) << offset;
  }
}

TEST(BmpTest, bytes_before_the_start_read_as_zero) {
  BmpFile file = three_by_two();
  file.pixel_offset = 0xFFFFFFF0; // the upper row starts at -4: 0 0 0, 0 'B' 'M', and the file size's 44 33 22
  EXPECT_THAT(decode(file).pixels, ElementsAre(0x0000, 0x4A00, 0x2188, 0, 0, 0));
}

TEST(BmpTest, limit_keeps_the_first_pixels_from_the_top) {
  EXPECT_THAT(decode(three_by_two(), 4).pixels, ElementsAre(0xFFFF, 0x0000, 0x11AA, 0x001F));
  EXPECT_THAT(decode(three_by_two(), 2).pixels, ElementsAre(0xFFFF, 0x0000));
  EXPECT_THAT(decode(three_by_two(), 6).pixels, testing::SizeIs(6));
  const Decoded none = decode(three_by_two(), 0);
  EXPECT_EQ(none.result, 0);
  EXPECT_EQ(none.width, 3);
  EXPECT_EQ(none.height, 2);
  EXPECT_TRUE(none.has_array);
}

TEST(BmpTest, zero_width_or_height_gives_no_pixels) {
  const std::pair<int, int> sizes[] = {{0, 0}, {0, 5}, {5, 0}, {0, 2147483647}, {2147483647, 0}};
  for (const auto &[width, height] : sizes) {
    BmpFile file;
    file.width = width;
    file.height = height;
    const Decoded decoded = decode(file);
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.width, width);
    EXPECT_EQ(decoded.height, height);
    EXPECT_TRUE(decoded.has_array);
  }
}

TEST(BmpTest, negative_width_or_more_than_67108864_pixels_are_refused) {
  constexpr std::int32_t lowest = -2147483647 - 1;
  const std::pair<int, int> sizes[] = {
      {-1, 1},     {-1, -1},     {-1, 0},       {lowest, 1},   {1, lowest},
      {0, lowest}, {8193, 8192}, {8192, -8193}, {1, 67108865}, {2147483647, 2147483647}};
  for (const auto &[width, height] : sizes) {
    SCOPED_TRACE(testing::Message() << width << " x " << height);
    BmpFile file;
    file.width = width;
    file.height = height;
    expect_failure(decode(file), no_memory);
  }
}

TEST(BmpTest, picture_of_67108864_pixels_is_decoded) {
  BmpFile file;
  file.width = 8192;
  file.height = 8192;
  const Decoded decoded = decode(file, 16);
  EXPECT_EQ(decoded.result, 0);
  EXPECT_EQ(decoded.width, 8192);
  EXPECT_EQ(decoded.height, 8192);
  EXPECT_THAT(decoded.pixels, ElementsAreArray(std::vector<int>(16, 0)));
}

TEST(BmpTest, picture_for_which_there_is_no_memory_is_refused) {
  const library_calls::Restore restore;
  library_calls::lacking_bytes = 12;
  expect_failure(decode(three_by_two()), no_memory);
  library_calls::lacking_bytes = 13;
  EXPECT_EQ(decode(three_by_two()).result, 0);
}

TEST(BmpTest, failure_gives_up_an_older_array) {
  PixelArray array(new std::uint16_t[3]);
  std::int32_t width = 3;
  std::int32_t height = 1;
  BmpFile file;
  file.width = -1;
  output_of([&] { bmp_decode_24(view(file.bytes()), &width, &height, &array); });
  EXPECT_EQ(array, nullptr);
}

TEST(BmpTest, depth_other_than_24_bits_is_refused) {
  for (const std::uint16_t bits : {std::uint16_t{1}, std::uint16_t{8}, std::uint16_t{16}, std::uint16_t{32}}) {
    BmpFile file;
    file.bits_per_pixel = bits;
    const Decoded decoded = decode(file);
    EXPECT_EQ(decoded.output, "Only 24-bit depth BMP's are supported at this time.");
    EXPECT_EQ(decoded.result, -1) << bits;
  }
}

TEST(BmpTest, header_is_checked_before_the_depth) {
  BmpFile file;
  file.bits_per_pixel = 16;
  file.planes = 0;
  EXPECT_EQ(decode(file).output, "\tInvalid number of colour planes! Exiting.");
  EXPECT_EQ(decode(file).result, -1);
}

TEST(BmpTest, wants_bytes_and_all_result_places) {
  const std::string bytes = three_by_two().bytes();
  std::int32_t size = 7;
  PixelArray array;
  int result = 0;
  const auto output = [&](ByteView bmp, std::int32_t *width, std::int32_t *height, PixelArray *pixels) {
    result = 99;
    return output_of([&] { result = bmp_decode_24(bmp, width, height, pixels); });
  };
  EXPECT_EQ(output(view(bytes), nullptr, &size, &array), "One of the output pointers is NULL!");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(output(view(bytes), &size, nullptr, &array), "One of the output pointers is NULL!");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(output(view(bytes), &size, &size, nullptr), "One of the output pointers is NULL!");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(output({}, nullptr, nullptr, nullptr), "BMP Data pointer is NULL! Exiting.");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(size, 7);
}

/// Memory at an address that a file's own fields can bring to null.
class LowMemory {
public:
  LowMemory()
      : _place(::mmap(reinterpret_cast<void *>(address), size, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0)) {}
  ~LowMemory() {
    if (_place != MAP_FAILED)
      ::munmap(_place, size);
  }
  LowMemory(const LowMemory &) = delete;
  LowMemory &operator=(const LowMemory &) = delete;

  static constexpr std::uintptr_t address = 0x100000;
  static constexpr std::size_t size = 4096;
  /// Null when the kernel has put nothing there.
  char *data() const { return _place == reinterpret_cast<void *>(address) ? static_cast<char *>(_place) : nullptr; }

private:
  void *_place;
};

TEST(BmpTest, pixels_at_address_null_are_refused) {
  const LowMemory memory;
  if (!memory.data())
    GTEST_SKIP() << "the kernel maps nothing at this address";
  BmpFile file = three_by_two();
  file.pixel_offset = 0xFFF00000; // -0x100000
  const std::string bytes = file.bytes();
  std::memcpy(memory.data(), bytes.data(), bytes.size());
  expect_failure(decode(ByteView(memory.data(), bytes.size())), "Bitmap data and associated pointer are corrupted.");

  file.pixel_offset = 0xFFF00001;
  const std::string next = file.bytes();
  std::memcpy(memory.data(), next.data(), next.size());
  EXPECT_EQ(decode(ByteView(memory.data(), next.size())).result, 0);
}

TEST(BmpTest, is_never_written_to) {
  const std::string bytes = three_by_two().bytes();
  const std::string before = bytes;
  decode(view(bytes));
  EXPECT_EQ(bytes, before);
}

} // namespace
} // namespace buttondriver::panel
