// SPDX-License-Identifier: Apache-2.0
#include "drawn_screen.h"

#include "panel/formats/font.h"

namespace buttondriver::simulator {

FontInUse::FontInUse(const std::string &name) {
  panel::freetype_start();
  EXPECT_EQ(panel::font_load((BUTTONDRIVER_TEST_FONTS "/" + name + ".pcf.gz").c_str()), 0);
}

FontInUse::~FontInUse() { panel::freetype_end(); }

void DrawnScreen::draw(int left, int top, const Rows &rows, const Colours &colours) {
  for (std::size_t row = 0; row < rows.size(); ++row)
    for (std::size_t column = 0; column < rows[row].size(); ++column)
      if (const char letter = rows[row][column]; letter != ' ')
        _pixels.at((static_cast<std::size_t>(top) + row) * dimensions::screen_width + static_cast<std::size_t>(left) +
                   column) = colours.at(letter);
}

} // namespace buttondriver::simulator
