// SPDX-License-Identifier: Apache-2.0
#include "model/shown_panel.h"

#include "support/hex.h"

#include <iomanip>
#include <sstream>

namespace buttondriver::test {

namespace {

template <std::size_t count>
void compare_lamps(std::ostream &report, const char *name, const std::array<bool, count> &expected,
                   const std::array<bool, count> &actual) {
  for (std::size_t i = 0; i < count; ++i)
    if (expected[i] != actual[i])
      report << name << ' ' << i << ": expected " << (expected[i] ? "on" : "off") << '\n';
}

void compare_screens(std::ostream &report, std::size_t screen, const std::vector<std::uint16_t> &expected,
                     const std::vector<std::uint16_t> &actual) {
  constexpr std::size_t width = 128;
  std::size_t different = 0;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (expected[i] == actual[i])
      continue;
    if (different++ == 0)
      report << "screen " << screen << ", first at column " << i % width << " of row " << i / width << std::hex
             << std::setfill('0') << ": expected " << std::setw(4) << expected[i] << ", shown " << std::setw(4)
             << actual[i] << std::dec;
  }
  if (different > 0)
    report << ", different pixels: " << different << '\n';
}

} // namespace

std::string differences(const ShownPanel &expected, const ShownPanel &actual) {
  std::ostringstream report;
  compare_lamps(report, "button LED", expected.button_leds, actual.button_leds);
  compare_lamps(report, "status LED", expected.status_leds, actual.status_leds);
  compare_lamps(report, "toggle", expected.toggles, actual.toggles);
  if (expected.intensity != actual.intensity)
    report << "intensity: expected " << expected.intensity << ", shown " << actual.intensity << '\n';
  for (std::size_t screen = 0; screen < expected.screens.size(); ++screen)
    compare_screens(report, screen, expected.screens[screen], actual.screens[screen]);
  if (expected.answers != actual.answers)
    report << "answers: expected " << to_hex(expected.answers) << ", got " << to_hex(actual.answers) << '\n';
  return report.str();
}

} // namespace buttondriver::test
