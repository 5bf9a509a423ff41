// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <cstddef>
#include <map>

namespace buttondriver::buttonctl {

/// What the virtual panel says about itself.
struct PanelReport {
  static constexpr std::size_t led_count = 32;
  static constexpr std::size_t toggle_count = 2;
  static constexpr std::size_t screen_count = 3;

  std::array<bool, led_count> button_leds{};
  std::array<bool, led_count> status_leds{};
  std::array<bool, toggle_count> toggles{};
  int intensity = 0;
  std::map<int, int> blinking;                             ///< milliseconds of each phase, by button
  std::array<std::map<int, QString>, screen_count> text{}; ///< of each screen, by line
};

/// Reads the JSON text of `/state.json`; see panel_state_reader.h. A member that is missing or is not what it should be
/// is a failure that names it; members that nobody knows are passed over.
Outcome<PanelReport> parse_panel_report(const QByteArray &json);

} // namespace buttondriver::buttonctl
