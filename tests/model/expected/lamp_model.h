// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/shown_panel.h"

#include <cstdint>
#include <map>

namespace buttondriver::test {

/// Which lamps are on, steady or blinking, as messages and the passing of time make them.
class LampModel {
public:
  void set_button(std::int32_t button_id, std::int32_t state, std::int32_t time);
  void set_status(std::int32_t id, std::int32_t state);
  void set_toggle(std::uint32_t indicator, std::uint32_t state);
  /// 20 ms go by.
  void tick();

  /// Puts the lamps into `panel`.
  void show(ShownPanel &panel) const;

private:
  struct Blink {
    std::int32_t phase_ticks;
    std::int32_t ticks_gone;
  };

  void light_button(std::int32_t id, std::int32_t state);
  void send_byte(std::uint32_t byte);

  std::array<bool, 32> _button_leds{};
  std::array<bool, 32> _status_leds{};
  std::array<bool, 2> _toggles{};
  std::map<std::int32_t, Blink> _blinking;
};

} // namespace buttondriver::test
