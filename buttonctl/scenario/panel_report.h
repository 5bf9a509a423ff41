// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dimensions/panel_dimensions.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <map>

namespace buttondriver::buttonctl {

/// What the virtual panel reports about itself.
struct PanelReport {
  std::array<bool, dimensions::led_count> button_leds{};
  std::array<bool, dimensions::led_count> status_leds{};
  std::array<bool, dimensions::toggle_indicator_count> toggles{};
  int intensity = 0;
  std::map<int, int> blinking;                                         ///< milliseconds of each phase, by button
  std::array<std::map<int, QString>, dimensions::screen_count> text{}; ///< of each screen, by line
};

/// Reads the JSON text of `/state.json`; see panel_state_reader.h. A member that is missing or is not what it should be
/// is a failure that names it; members that nobody knows are passed over.
Outcome<PanelReport> parse_panel_report(const QByteArray &json);

} // namespace buttondriver::buttonctl
