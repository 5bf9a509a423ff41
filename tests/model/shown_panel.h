// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace buttondriver::test {

/// All that can be seen of a panel, and what a client has been answered.
struct ShownPanel {
  std::array<bool, 32> button_leds{};
  std::array<bool, 32> status_leds{};
  std::array<bool, 2> toggles{};
  unsigned intensity = 63;
  /// The pixels of each screen, row by row from the top.
  std::array<std::vector<std::uint16_t>, 3> screens;
  std::string answers;
};

/// What is different, in a few lines for a person; empty when nothing is.
std::string differences(const ShownPanel &expected, const ShownPanel &actual);

} // namespace buttondriver::test
