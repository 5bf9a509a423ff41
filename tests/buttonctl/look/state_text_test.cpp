// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/look/state_text.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

PanelReport lit_panel() {
  PanelReport report;
  report.button_leds[5] = true;
  report.button_leds[6] = true;
  report.button_leds[23] = true;
  report.status_leds[0] = true;
  report.status_leds[31] = true;
  report.toggles[1] = true;
  report.intensity = 40;
  report.blinking = {{4, 250}, {5, 500}};
  report.sent.emplace();
  (*report.sent)[0] = {{0, QStringLiteral("Channel 7  ")}, {1, QString()}, {2, QStringLiteral("Gr\u00fc\u00dfe")}};
  (*report.sent)[1] = {{0, QStringLiteral("too long for a line")}, {90, QStringLiteral("far below")}};
  (*report.sent)[2] = {{7, QStringLiteral("a\x1b[2J\u009b")}};
  report.drawn.emplace(*report.sent);
  (*report.drawn)[1] = {{0, QStringLiteral("too long for a l")}, {2, QStringLiteral("below")}};
  return report;
}

TEST(StateTextTest, tells_all_that_is_on) {
  EXPECT_EQ(state_text(lit_panel()).toStdString(), "screen 0\n"
                                                   "  0: Channel 7\n"
                                                   "  2: Gr\xc3\xbc\xc3\x9f"
                                                   "e\n"
                                                   "screen 1\n"
                                                   "  0: too long for a l  (sent: too long for a line)\n"
                                                   "  2: below  (sent: )\n"
                                                   "  90: (sent: far below)\n"
                                                   "screen 2\n"
                                                   "  7: a\\x1b[2J\\x9b\n"
                                                   "LEDs: 6 23 on, 4 blinking (250 ms), 5 blinking (500 ms)\n"
                                                   "status LEDs: 0 31 on\n"
                                                   "toggle indicators: 1 on\n"
                                                   "brightness: 40 of 63\n");
}

TEST(StateTextTest, stays_the_same_while_leds_blink) {
  PanelReport report = lit_panel();
  const QString before = state_text(report);
  report.button_leds[4] = true;
  report.button_leds[5] = false;
  EXPECT_EQ(state_text(report).toStdString(), before.toStdString());
}

TEST(StateTextTest, tells_what_nobody_knows) {
  PanelReport report;
  report.button_leds[3] = true;
  report.drawn_fault = QStringLiteral("the font is not known");
  EXPECT_EQ(state_text(report).toStdString(),
            "screen 0: cannot be read: the font is not known\n"
            "screen 1: cannot be read: the font is not known\n"
            "screen 2: cannot be read: the font is not known\n"
            "LEDs: 3 on; blinking not known, because another program drives the panel\n"
            "status LEDs: none on\n"
            "toggle indicators: none on\n"
            "brightness: 0 of 63\n");
}

TEST(StateTextTest, tells_what_was_sent_where_nothing_can_be_read_and_what_is_drawn_where_nobody_knows_what_was_sent) {
  PanelReport report;
  report.drawn_fault = QStringLiteral("no font is loaded");
  report.sent.emplace();
  (*report.sent)[1] = {{0, QStringLiteral("Ready")}};
  EXPECT_EQ(state_text(report).split(QStringLiteral("LEDs")).first().toStdString(),
            "screen 0: cannot be read: no font is loaded\n"
            "screen 1: cannot be read: no font is loaded\n"
            "  0: (sent: Ready)\n"
            "screen 2: cannot be read: no font is loaded\n");
  std::swap(report.sent, report.drawn);
  EXPECT_EQ(state_text(report).split(QStringLiteral("LEDs")).first().toStdString(), "screen 0\n"
                                                                                    "screen 1\n"
                                                                                    "  0: Ready\n"
                                                                                    "screen 2\n");
}

} // namespace
} // namespace buttondriver::buttonctl
