// SPDX-License-Identifier: Apache-2.0
#include "bmp_file.h"
#include "panel/formats/bmp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

namespace buttondriver::panel {
namespace {

/// The pixels of a picture one by one, as the format is defined; bytes that are not there are zero.
std::vector<std::uint16_t> pixels_of(const BmpFile &file, const std::string &bytes) {
  const auto byte_at = [&](std::int64_t place) -> unsigned {
    const bool is_there = place >= 0 && place < static_cast<std::int64_t>(bytes.size());
    return is_there ? static_cast<unsigned char>(bytes[static_cast<std::size_t>(place)]) : 0;
  };
  std::vector<std::uint16_t> pixels;
  const std::int64_t rows = std::abs(file.height);
  for (std::int64_t row = 0; row < rows; ++row)
    for (std::int64_t column = 0; column < file.width; ++column) {
      const std::int64_t stored_row = file.height < 0 ? row : rows - 1 - row;
      const std::int64_t place =
          static_cast<std::int32_t>(file.pixel_offset) + stored_row * (file.width * 3 + file.width % 4) + column * 3;
      pixels.push_back(
          static_cast<std::uint16_t>(byte_at(place + 2) / 8 * 2048 + byte_at(place + 1) / 4 * 32 + byte_at(place) / 8));
    }
  return pixels;
}

TEST(RandomBmpTest, has_the_pixels_of_its_bytes_wherever_they_begin_and_the_file_ends) {
  std::minstd_rand random(7);
  const auto number = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
  for (int picture = 0; picture < 20'000; ++picture) {
    BmpFile file;
    file.width = number(0, number(0, 3) == 0 ? 40 : 9);
    file.height = number(-7, 7);
    file.pixel_offset = static_cast<std::uint32_t>(number(0, 1) == 0 ? 54 : number(-200, 300));
    // Mostly about as much as there should be: rows are inside, in part, and outside.
    const int size = std::abs(file.height) * (file.width * 3 + file.width % 4);
    file.pixels.resize(static_cast<std::size_t>(std::max(0, size + number(-40, 10))));
    for (char &byte : file.pixels)
      byte = static_cast<char>(random() >> 8);
    const std::string bytes = file.bytes();
    const std::vector<char> exact(bytes.begin(), bytes.end()); // AddressSanitizer sees what is read past its end
    std::vector<std::uint16_t> expected = pixels_of(file, bytes);
    const std::size_t limit = number(0, 3) == 0 ? static_cast<std::size_t>(number(0, 60)) : 1000;
    expected.resize(std::min(expected.size(), limit));

    std::int32_t width = 0;
    std::int32_t height = 0;
    PixelArray pixels;
    ASSERT_EQ(bmp_decode_24(ByteView(exact.data(), exact.size()), &width, &height, &pixels, limit), 0);
    ASSERT_EQ(std::vector(pixels.get(), pixels.get() + expected.size()), expected)
        << "picture " << picture << ": " << file.width << " x " << file.height << " at "
        << static_cast<std::int32_t>(file.pixel_offset) << ", " << bytes.size() << " bytes, limit " << limit;
  }
}

} // namespace
} // namespace buttondriver::panel
