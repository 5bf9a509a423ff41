// SPDX-License-Identifier: Apache-2.0
#include "model/shown_panel.h"

#include "support/hex.h"

#include <iomanip>
#include <sstream>

namespace buttondriver::test {

namespace {

template <std::size_t count>
void compare_lamps(std::ostream &said, const char *name, const std::array<bool, count> &expected,
                   const std::array<bool, count> &actual) {
  for (std::size_t i = 0; i < count; ++i)
    if (expected[i] != actual[i])
      said << name << ' ' << i << ": expected " << (expected[i] ? "on" : "off") << '\n';
}

void compare_screens(std::ostream &said, std::size_t screen, const std::vector<std::uint16_t> &expected,
                     const std::vector<std::uint16_t> &actual) {
  constexpr std::size_t width = 128;
  std::size_t different = 0;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (expected[i] == actual[i])
      continue;
    if (different++ == 0)
      said << "screen " << screen << ", first at column " << i % width << " of row " << i / width << std::hex
           << std::setfill('0') << ": expected " << std::setw(4) << expected[i] << ", shown " << std::setw(4)
           << actual[i] << std::dec;
  }
  if (different > 0)
    said << ", different pixels: " << different << '\n';
}

} // namespace

std::string differences(const ShownPanel &expected, const ShownPanel &actual) {
  std::ostringstream said;
  compare_lamps(said, "button LED", expected.button_leds, actual.button_leds);
  compare_lamps(said, "status LED", expected.status_leds, actual.status_leds);
  compare_lamps(said, "toggle", expected.toggles, actual.toggles);
  if (expected.intensity != actual.intensity)
    said << "intensity: expected " << expected.intensity << ", shown " << actual.intensity << '\n';
  for (std::size_t screen = 0; screen < expected.screens.size(); ++screen)
    compare_screens(said, screen, expected.screens[screen], actual.screens[screen]);
  if (expected.answers != actual.answers)
    said << "answers: expected " << to_hex(expected.answers) << ", got " << to_hex(actual.answers) << '\n';
  return said.str();
}

} // namespace buttondriver::test
