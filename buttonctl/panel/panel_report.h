// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dimensions/panel_dimensions.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <map>
#include <optional>

namespace buttondriver::buttonctl {

/// What the virtual panel reports about itself.
struct PanelReport {
  std::array<bool, dimensions::led_count> button_leds{};
  std::array<bool, dimensions::led_count> status_leds{};
  std::array<bool, dimensions::toggle_indicator_count> toggles{};
  int intensity = 0;
  /// Of each screen, by line.
  using Text = std::array<std::map<int, QString>, dimensions::screen_count>;
  // What was sent and what blinks is not known when another program drives the panel.
  std::optional<std::map<int, int>> blinking; ///< milliseconds of each phase, by button
  std::optional<Text> sent;
  std::optional<Text> drawn; ///< as it was read from the screens' pixels
  QString drawn_fault;       ///< why nothing can be read, where nothing can
};

/// Reads the JSON text of `/state.json`; see panel_state_reader.h. A member that is missing or is not what it should be
/// is a failure that names it; "blinking" and "screens" may be null, and so may "text" and "drawn" in these. Members
/// that nobody knows are passed over.
Outcome<PanelReport> parse_panel_report(const QByteArray &json);

} // namespace buttondriver::buttonctl
