// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace buttondriver {

/// A picture of 40 x 24 one-bit pixels: 24 rows of 5 bytes, most significant bit leftmost. A new one is blank.
struct ButtonImage {
  static constexpr std::size_t size = 120;
  std::array<std::uint8_t, size> bytes{};
};

/// Image ids 0 to 22 are built in, and shared by all connections.
inline constexpr std::int32_t built_in_image_count = 23;

/// The built-in images. Panels come without artwork of their own: they are blank until a client uploads others.
inline constexpr std::array<ButtonImage, built_in_image_count> built_in_images{};

} // namespace buttondriver
