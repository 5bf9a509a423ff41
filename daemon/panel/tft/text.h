// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Text on the screens, in a grid of character cells as large as the glyph "A" of the font in use. Texts are Latin-1;
/// colours are 0xRRGGBB. Screen ids are 0, 1, 2, and -1 for all. A fault is printed on standard output. A text that is
/// given as a pointer ends at its NUL; a null pointer is a missing text, which cannot be drawn, as is a view without
/// data.
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

/// The text at `text`, of which no more than `most` characters are looked at; a view without data for null.
inline std::string_view text_at(const char *text, std::size_t most = std::string_view::npos) {
  if (!text)
    return {};
  return most == std::string_view::npos ? std::string_view(text) : std::string_view(text, ::strnlen(text, most));
}
inline std::string_view text_at(const char *text, int count) {
  return text_at(text, static_cast<std::size_t>(std::max(count, 0)));
}

inline int tft_text_line(int screen_id, int line_id, const char *text, std::uint32_t text_colour,
                         std::uint32_t back_colour) {
  return tft_text_line(screen_id, line_id, text_at(text), text_colour, back_colour);
}
inline int tft_text_line_default(int screen_id, int line_id, const char *text) {
  return tft_text_line_default(screen_id, line_id, text_at(text));
}
inline int tft_sub_text_line(int screen_id, int line_id, int offset, const char *text, int num_chars,
                             std::uint32_t text_colour, std::uint32_t back_colour) {
  return tft_sub_text_line(screen_id, line_id, offset, text_at(text, num_chars), num_chars, text_colour, back_colour);
}
inline int tft_render_text(unsigned mask, const char *text, int count, std::uint16_t text_pixel,
                           std::uint16_t back_pixel, bool whole_line) {
  return tft_render_text(mask, text_at(text, count), count, text_pixel, back_pixel, whole_line);
}

} // namespace buttondriver::panel
