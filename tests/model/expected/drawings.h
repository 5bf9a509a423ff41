// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/expected/bdf_font.h"
#include "model/expected/screen_memory.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace buttondriver::test {

/// What one drawing puts on a screen: pixels in sending order, and the window that they go into.
struct Drawing {
  Span columns;
  Span rows;
  std::vector<std::uint16_t> pixels;
};

struct TextColours {
  std::uint32_t text; ///< 0xRRGGBB
  std::uint32_t back;
};

/// A line across the whole screen. Nothing when it cannot be drawn; `font` may be null.
std::optional<Drawing> whole_line(const BdfFont *font, std::int32_t line_id, const std::string &text,
                                  const TextColours &colours);

/// `characters` characters from character `offset` of a line on; blanks stand for those that `text` does not have.
std::optional<Drawing> part_of_line(const BdfFont *font, std::int32_t line_id, std::int32_t offset,
                                    std::int32_t characters, const std::string &text, const TextColours &colours);

/// A BMP file with its top left corner at (x, y).
std::optional<Drawing> picture(const std::string &bmp, std::int32_t x, std::int32_t y);

/// All of a screen black.
Drawing blackness();

} // namespace buttondriver::test
