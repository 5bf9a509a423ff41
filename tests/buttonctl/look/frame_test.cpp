// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/look/frame.h"
#include "buttonctl/look/terminal.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

constexpr Colour red{255, 0, 0};
constexpr Colour green{0, 255, 0};
constexpr Colour blue{0, 0, 255};
constexpr Colour white{255, 255, 255};

/// 2 x 2: red, red over blue, green.
Picture square() {
  Picture picture({2, 2}, red);
  picture.set(0, 1, blue);
  picture.set(1, 1, green);
  return picture;
}

std::string text_of(const QStringList &lines) { return lines.join(QLatin1Char('\n')).toStdString(); }

TEST(HalfBlocksTest, show_two_pixels_in_a_character) {
  EXPECT_EQ(text_of(half_blocks({square()}, Colours::all)), "\x1b[38;2;255;0;0m\x1b[48;2;0;0;255m\u2580"
                                                            "\x1b[48;2;0;255;0m\u2580\x1b[0m");
  EXPECT_EQ(text_of(half_blocks({square()}, Colours::few)), "\x1b[38;5;196m\x1b[48;5;21m\u2580"
                                                            "\x1b[48;5;46m\u2580\x1b[0m");
}

TEST(HalfBlocksTest, stand_side_by_side_and_a_missing_row_is_black) {
  EXPECT_EQ(text_of(half_blocks({Picture({1, 3}, white), Picture({1, 3}, red)}, Colours::all)),
            "\x1b[38;2;255;255;255m\x1b[48;2;255;255;255m\u2580\x1b[0m "
            "\x1b[38;2;255;0;0m\x1b[48;2;255;0;0m\u2580\x1b[0m\n"
            "\x1b[38;2;255;255;255m\x1b[48;2;0;0;0m\u2580\x1b[0m "
            "\x1b[38;2;255;0;0m\x1b[48;2;0;0;0m\u2580\x1b[0m");
  EXPECT_EQ(text_of(half_blocks({}, Colours::all)), "");
}

/// The values of xterm's table: 16 + 36 red + 6 green + blue in steps of 0, 95, 135, 175, 215, 255, and 232 to 255 for
/// the greys 8, 18, ... 238.
TEST(HalfBlocksTest, take_the_nearest_of_256_colours) {
  struct Row {
    Colour colour;
    int number;
  };
  const Row rows[] = {
      {{0, 0, 0}, 16},
      {white, 231},
      {red, 196},
      {green, 46},
      {blue, 21},
      {{95, 135, 175}, 67},
      {{90, 140, 170}, 67},
      {{8, 8, 8}, 232},
      {{238, 238, 238}, 255},
      {{128, 128, 128}, 244},
      {{250, 250, 250}, 231},
      {{3, 3, 3}, 16},
      {{4, 4, 4}, 16},
      {{5, 5, 5}, 232},
      {{18, 18, 18}, 233},
  };
  for (const Row &row : rows)
    EXPECT_EQ(nearest_of_256(row.colour), row.number)
        << int{row.colour.red} << ' ' << int{row.colour.green} << ' ' << int{row.colour.blue};
}

PanelReport lit_report() {
  PanelReport report;
  report.button_leds[0] = true;
  report.button_leds[9] = true;
  report.status_leds[31] = true;
  report.toggles[1] = true;
  report.intensity = 63;
  report.blinking.emplace()[9] = 500;
  report.drawn.emplace();
  return report;
}

TEST(FrameTest, has_the_screens_and_below_what_is_lit) {
  EXPECT_EQ(text_of(frame({square()}, lit_report(), Colours::all, {80, 24})),
            "\x1b[38;2;255;0;0m\x1b[48;2;0;0;255m\u2580\x1b[48;2;0;255;0m\u2580\x1b[0m\n"
            "LEDs    \u25cf\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7 "
            "\u00b7\u25cf\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7 "
            "\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7 "
            "\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\n"
            "status  \u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7 "
            "\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7 "
            "\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7 "
            "\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u00b7\u25cf\n"
            "toggles \u00b7\u25cf\n"
            "LEDs: 0 on, 9 blinking (500 ms)\n"
            "status LEDs: 31 on\n"
            "toggle indicators: 1 on\n"
            "brightness: 63 of 63");
}

TEST(FrameTest, fits_into_the_terminal) {
  struct Row {
    QSize size;
    int screens;
    int side; // in pixels, and so in columns
  };
  const Row rows[] = {
      {{400, 100}, 3, 128}, {{386, 71}, 3, 128}, {{385, 71}, 3, 127}, {{386, 70}, 3, 126},
      {{80, 24}, 3, 26},    {{80, 24}, 1, 34},   {{80, 60}, 1, 80},   {{1, 1}, 3, 2},
  };
  for (const Row &row : rows) {
    const std::vector<Picture> screens(static_cast<std::size_t>(row.screens), Picture({128, 128}, red));
    const QStringList lines = frame(screens, lit_report(), Colours::few, row.size);
    EXPECT_EQ(lines.size(), (row.side + 1) / 2 + 7) << row.size.width() << " x " << row.size.height();
    EXPECT_EQ(lines.first().count(QStringLiteral("\u2580")), row.side * row.screens);
    EXPECT_LE(lines.last().size(), row.size.width());
  }
}

TEST(TerminalTest, has_the_colours_that_it_promises) {
  struct Row {
    TerminalFacts facts;
    Colours colours;
  };
  const Row rows[] = {
      {{true, "xterm-256color", "", ""}, Colours::few},
      {{true, "xterm-256color", "truecolor", ""}, Colours::all},
      {{true, "xterm", "24bit", ""}, Colours::all},
      {{true, "xterm-direct", "", ""}, Colours::all},
      {{true, "xterm", "", ""}, Colours::few},
      {{true, "dumb", "truecolor", ""}, Colours::none},
      {{true, "", "truecolor", ""}, Colours::none},
      {{true, "xterm", "truecolor", "1"}, Colours::none},
      {{false, "xterm", "truecolor", ""}, Colours::none},
  };
  for (const Row &row : rows)
    EXPECT_EQ(colours_of(row.facts), row.colours) << row.facts.term.constData() << row.facts.colorterm.constData();
}

} // namespace
} // namespace buttondriver::buttonctl
