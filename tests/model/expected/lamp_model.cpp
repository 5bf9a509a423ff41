// SPDX-License-Identifier: Apache-2.0
#include "model/expected/lamp_model.h"

namespace buttondriver::test {

namespace {

constexpr std::int32_t button_count = 24;
constexpr std::int32_t tick_ms = 20;
constexpr std::uint32_t button_kind = 0x40;
constexpr std::uint32_t status_kind = 0x80;
constexpr std::uint32_t on_bit = 0x20;

} // namespace

void LampModel::set_button(std::int32_t button_id, std::int32_t state, std::int32_t time) {
  if (button_id == -1) {
    for (std::int32_t id = 0; id < button_count; ++id)
      set_button(id, state, time);
    return;
  }
  if (button_id < 0 || button_id >= button_count)
    return;
  if (state != -1) {
    light_button(button_id, state);
    _blinking.erase(button_id);
  } else if (time != 0) {
    const std::int32_t ticks = time / tick_ms;
    _blinking[button_id] = {ticks == 0 ? 1 : ticks, 0};
  }
}

void LampModel::set_status(std::int32_t id, std::int32_t state) {
  send_byte(static_cast<std::uint32_t>(id) + status_kind + (state == 1 ? on_bit : 0));
}

void LampModel::set_toggle(std::uint32_t indicator, std::uint32_t state) {
  if (indicator <= 1 && state <= 1)
    _toggles[indicator] = state == 1;
}

void LampModel::tick() {
  for (auto &[id, blink] : _blinking) {
    if (blink.ticks_gone >= 2 * std::int64_t{blink.phase_ticks})
      blink.ticks_gone = 0;
    if (blink.ticks_gone == 0 || blink.ticks_gone == blink.phase_ticks)
      light_button(id, blink.ticks_gone >= blink.phase_ticks ? 1 : 0);
    ++blink.ticks_gone;
  }
}

void LampModel::show(ShownPanel &panel) const {
  panel.button_leds = _button_leds;
  panel.status_leds = _status_leds;
  panel.toggles = _toggles;
}

void LampModel::light_button(std::int32_t id, std::int32_t state) {
  send_byte(static_cast<std::uint32_t>(id) + button_kind + (state == 1 ? on_bit : 0));
}

/// Ids that are too high run into the bits of on and of the kind.
void LampModel::send_byte(std::uint32_t byte) {
  const bool is_on = (byte & on_bit) != 0;
  if ((byte & 0xC0) == button_kind)
    _button_leds[byte & 0x1F] = is_on;
  else if ((byte & 0xC0) == status_kind)
    _status_leds[byte & 0x1F] = is_on;
}

} // namespace buttondriver::test
