// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

namespace buttondriver::panel {

/// Turns `count` pixels of three bytes, blue first, into as many 16-bit pixels: bgr_to_rgb565 for each of them, many at
/// a time. Reads 3 x `count` bytes and writes `count` pixels, wherever both lie; they do not overlap.
void bgr_row_to_rgb565(const std::uint8_t *bytes, std::uint16_t *pixels, std::size_t count);

} // namespace buttondriver::panel
