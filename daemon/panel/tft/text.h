// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

/// Text on the screens, in a grid of character cells as large as the glyph "A" of the font in use. Texts are Latin-1;
/// colours are 0xRRGGBB. Screen ids are 0, 1, 2, and -1 for all. A fault is printed on standard output.
namespace buttondriver::panel {

/// Writes `text` as line `line_id` (0 is topmost), over the whole width; what does not fit is dropped.
/// Returns 0, or -1 when the screen does not exist or the text cannot be drawn.
int tft_text_line(int screen_id, int line_id, std::string_view text, std::uint32_t text_colour,
                  std::uint32_t back_colour);
/// tft_text_line in black on white.
int tft_text_line_default(int screen_id, int line_id, std::string_view text);
/// Writes `num_chars` characters of `text` from character cell `offset` of the line on; blanks stand for those past
/// the end of the text. Returns as tft_text_line.
int tft_sub_text_line(int screen_id, int line_id, int offset, std::string_view text, int num_chars,
                      std::uint32_t text_colour, std::uint32_t back_colour);

/// Draws `count` characters of `text` into a block, as wide as the screen for a whole line and `count` cells wide
/// otherwise, and sends it to the window that is open. Pixels are 5-6-5. Outside of the glyphs' own bitmaps the block
/// is filled with the low byte of the back pixel twice. Returns 0, or -1 when the text has no data, there is no font or
/// no glyph of a form that can be drawn, or the block is too large.
int tft_render_text(unsigned mask, std::string_view text, int count, std::uint16_t text_pixel, std::uint16_t back_pixel,
                    bool whole_line);

} // namespace buttondriver::panel
