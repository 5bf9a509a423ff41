// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttons/button.h"

namespace buttondriver {

/// Makes the buttons of a panel type: 3, 4 or 5, all with the same 24 buttons.
class ButtonFactory {
public:
  static constexpr std::int32_t default_panel_type = 5;

  explicit ButtonFactory(std::int32_t panel_type = default_panel_type) : _panel_type(panel_type) {}

  /// Replaces what is in `buttons` by new buttons with ids 0 to 23, which the caller owns from then on. With a panel
  /// type that does not exist it says so and leaves the map as it was.
  void createButtons(ButtonMap &buttons, FPGA *fpga) const;

  /// Puts `button` into the map unless the id is taken; taken by another button, that is printed and the first one
  /// stays. Returns whether `button` is in the map.
  static bool insertButton(ButtonMap &buttons, std::int32_t id, IButton *button);

private:
  std::int32_t _panel_type;
};

} // namespace buttondriver
