// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dimensions/panel_dimensions.h"

#include <array>
#include <cstdint>

namespace buttondriver {

/// A picture of 40 x 24 one-bit pixels: 24 rows of 5 bytes, most significant bit leftmost. A new one is blank.
struct ButtonImage {
  std::array<std::uint8_t, dimensions::button_image_bytes> bytes{};
};

/// The built-in images. Panels come without artwork of their own: they are blank until a client uploads others.
inline constexpr std::array<ButtonImage, dimensions::built_in_image_count> built_in_images{};

} // namespace buttondriver
