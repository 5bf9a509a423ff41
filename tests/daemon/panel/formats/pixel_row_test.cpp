// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/pixel_row.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace buttondriver::panel {
namespace {

/// By its definition: the upper 5, 6 and 5 bits of red, green and blue.
std::uint16_t pixel(unsigned blue, unsigned green, unsigned red) {
  return static_cast<std::uint16_t>(red / 8 * 2048 + green / 4 * 32 + blue / 8);
}

TEST(PixelRowTest, converts_each_of_its_pixels_wherever_they_lie_and_nothing_else) {
  std::minstd_rand random(1);
  for (std::size_t count = 0; count <= 41; ++count)
    for (std::size_t offset = 0; offset < 16; ++offset) {
      SCOPED_TRACE(testing::Message() << count << " pixels at " << offset);
      std::vector<std::uint8_t> bytes(offset + 3 * count); // with no byte after it, which AddressSanitizer sees
      for (std::uint8_t &byte : bytes)
        byte = static_cast<std::uint8_t>(random() >> 8);
      std::vector<std::uint16_t> expected(offset, 0x1234);
      for (std::size_t i = offset; i < bytes.size(); i += 3)
        expected.push_back(pixel(bytes[i], bytes[i + 1], bytes[i + 2]));
      expected.push_back(0x5678);

      std::vector<std::uint16_t> pixels(offset, 0x1234);
      pixels.resize(offset + count, 0xABCD);
      pixels.push_back(0x5678);
      bgr_row_to_rgb565(bytes.data() + offset, pixels.data() + offset, count);
      ASSERT_EQ(pixels, expected);
    }
}

TEST(PixelRowTest, takes_each_bit_to_its_place) {
  // At each place of a row, so that it is first, last and in the middle of those that are converted at once.
  for (std::size_t place = 0; place < 19; ++place)
    for (unsigned bit = 0; bit < 24; ++bit) {
      std::vector<std::uint8_t> bytes(19 * 3);
      bytes[place * 3 + bit / 8] = static_cast<std::uint8_t>(1U << bit % 8);
      std::vector<std::uint16_t> expected(19);
      expected[place] = pixel(bytes[place * 3], bytes[place * 3 + 1], bytes[place * 3 + 2]);
      std::vector<std::uint16_t> pixels(19);
      bgr_row_to_rgb565(bytes.data(), pixels.data(), 19);
      ASSERT_EQ(pixels, expected) << "bit " << bit << " of pixel " << place;
    }
}

} // namespace
} // namespace buttondriver::panel
