// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/pixel_row.h"

#include "panel/formats/colour.h"

#include <cstring>

namespace buttondriver::panel {

namespace {

/// Eight pixels at a time are quicker only where the processor has operations on 16 bytes, and the order of the bytes
/// in a number has to be that of the file.
#if (defined(__SSE2__) || defined(__ARM_NEON)) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
constexpr bool has_wide_operations = true;
#else
constexpr bool has_wide_operations = false;
#endif

/// The compiler makes one operation of what is done with all four, where the processor has one.
using FourWords [[gnu::vector_size(16)]] = std::uint32_t;

/// Four bytes; the first one is the lowest.
std::uint32_t word(const std::uint8_t *bytes) {
  std::uint32_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

/// The pixels 0, 2, 4 and 6 are taken from words whose lower three bytes they are, the pixels 1, 3, 5 and 7 from words
/// whose upper three bytes they are, so that nothing past the eighth is read. Two pixels make a word of the result.
void convert_eight(const std::uint8_t *bytes, std::uint16_t *pixels) {
  const FourWords even = {word(bytes), word(bytes + 6), word(bytes + 12), word(bytes + 18)};
  const FourWords odd = {word(bytes + 2), word(bytes + 8), word(bytes + 14), word(bytes + 20)};
  const FourWords low = (even >> 8 & 0xF800) | (even >> 5 & 0x07E0) | (even >> 3 & 0x001F);
  const FourWords high = (odd & 0xF8000000) | (odd << 3 & 0x07E00000) | (odd << 5 & 0x001F0000);
  const FourWords result = low | high;
  std::memcpy(pixels, &result, sizeof result);
}

} // namespace

void bgr_row_to_rgb565(const std::uint8_t *bytes, std::uint16_t *pixels, std::size_t count) {
  if constexpr (has_wide_operations)
    for (; count >= 8; count -= 8, bytes += 24, pixels += 8)
      convert_eight(bytes, pixels);
  for (; count > 0; --count, bytes += 3)
    *pixels++ = bgr_to_rgb565(bytes[0], bytes[1], bytes[2]);
}

} // namespace buttondriver::panel
