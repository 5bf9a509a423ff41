// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/difference/label.h"

namespace buttondriver::buttonctl {

namespace {

constexpr int letter_width = 5;
constexpr int letter_height = 9;
constexpr int pixel_size = 2;
constexpr Colour ink{0, 0, 0};

struct Letter {
  char character;
  const char *rows[letter_height];
};

// clang-format off
constexpr Letter letters[] = {
    {'a', {"     ", "     ", " ### ", "    #", " ####", "#   #", " ####", "     ", "     "}},
    {'c', {"     ", "     ", " ### ", "#    ", "#    ", "#    ", " ### ", "     ", "     "}},
    {'d', {"    #", "    #", " ####", "#   #", "#   #", "#   #", " ####", "     ", "     "}},
    {'e', {"     ", "     ", " ### ", "#   #", "#####", "#    ", " ### ", "     ", "     "}},
    {'f', {"  ## ", " #   ", "#### ", " #   ", " #   ", " #   ", " #   ", "     ", "     "}},
    {'i', {"  #  ", "     ", " ##  ", "  #  ", "  #  ", "  #  ", " ### ", "     ", "     "}},
    {'l', {" ##  ", "  #  ", "  #  ", "  #  ", "  #  ", "  #  ", " ### ", "     ", "     "}},
    {'n', {"     ", "     ", "#### ", "#   #", "#   #", "#   #", "#   #", "     ", "     "}},
    {'p', {"     ", "     ", "#### ", "#   #", "#   #", "#   #", "#### ", "#    ", "#    "}},
    {'r', {"     ", "     ", "# ## ", "##   ", "#    ", "#    ", "#    ", "     ", "     "}},
    {'t', {" #   ", " #   ", "#### ", " #   ", " #   ", " #   ", "  ## ", "     ", "     "}},
    {'u', {"     ", "     ", "#   #", "#   #", "#   #", "#   #", " ####", "     ", "     "}},
    {'x', {"     ", "     ", "#   #", " # # ", "  #  ", " # # ", "#   #", "     ", "     "}},
};
// clang-format on

static_assert(label_height == letter_height * pixel_size);

void draw_letter(Picture &picture, int left, int top, const Letter &letter) {
  for (int y = 0; y < label_height; ++y)
    for (int x = 0; x < letter_width * pixel_size; ++x)
      if (letter.rows[y / pixel_size][x / pixel_size] != ' ' && picture.contains(left + x, top + y))
        picture.set(left + x, top + y, ink);
}

} // namespace

void draw_label(Picture &picture, int x, int y, std::string_view text) {
  for (const char character : text) {
    for (const Letter &letter : letters)
      if (letter.character == character)
        draw_letter(picture, x, y, letter);
    x += (letter_width + 1) * pixel_size;
  }
}

} // namespace buttondriver::buttonctl
