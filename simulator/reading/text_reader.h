// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/panel_state.h"
#include "simulator/reading/screen_font.h"

#include <array>
#include <string>
#include <vector>

namespace buttondriver::simulator {

/// Stands for a cell that is neither blank nor a character of the font.
inline constexpr char16_t unreadable_cell = u'\uFFFD';

/// The lines of text that stand on each screen.
using DrawnTexts = std::array<std::vector<std::u16string>, dimensions::screen_count>;

/// The lines of text that stand on a screen, from the topmost to the lowest that is not blank, each without the blanks
/// at its end. Read from the pixels, in cells of the font's size from the upper left corner; cells that are cut off by
/// the edge of the screen are not read. Empty when the font cannot be read with.
///
/// A cell of one colour is a blank. Otherwise it is the character whose glyph its pixels are, in any two colours. When
/// several characters look the same, it is the one that `sent` has in this place, if it is one of them, and otherwise
/// the one with the lowest code from the blank's on. `sent` are the lines that were told to stand there, Latin-1; it is
/// no proof of anything.
std::vector<std::u16string> read_lines(const ScreenFont &font, const ScreenPixels &pixels,
                                       const std::vector<std::string> &sent);

} // namespace buttondriver::simulator
