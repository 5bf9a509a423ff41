// SPDX-License-Identifier: Apache-2.0
#include "fleet/measure/wanted_panels.h"

#include "fleet/panels/delays.h"

namespace buttondriver::fleet {

std::size_t WantedPanels::any(std::size_t count) { return _numbers() % count; }

Wish WantedPanels::wish(std::size_t panel, const std::string &tail, const std::string &payload) {
  const std::string topic = "buttondriver/" + nameOf(panel) + '/' + tail;
  _topics[topic] = payload;
  return {topic, payload};
}

Wish WantedPanels::line(std::size_t panel, std::size_t screen, std::size_t line, const std::string &text) {
  _states[panel].screens[screen][line] = {text, false};
  return wish(panel, "screen/" + std::to_string(screen) + "/line/" + std::to_string(line), text);
}

Wish WantedPanels::next() {
  const std::size_t panel = any(_states.size());
  PanelState &state = _states[panel];
  if (any(2) == 0)
    return line(panel, any(state.screens.size()), any(PanelState::line_count), stamp_now());
  if (any(2) == 0) {
    const std::size_t lamp = any(state.status.size());
    state.status[lamp] = any(2) == 0;
    return wish(panel, "status/" + std::to_string(lamp), state.status[lamp] ? "on" : "off");
  }
  const std::size_t button = any(state.buttons.size());
  constexpr std::int32_t slowest_ms = 1000;
  const std::int32_t choices[] = {0, 1, -static_cast<std::int32_t>(1 + any(slowest_ms))};
  const std::int32_t wanted = state.buttons[button] = choices[any(3)];
  const std::string payload = wanted == 0 ? "off" : wanted == 1 ? "on" : "blink " + std::to_string(-wanted);
  return wish(panel, "led/" + std::to_string(button), payload);
}

} // namespace buttondriver::fleet
