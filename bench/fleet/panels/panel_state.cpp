// SPDX-License-Identifier: Apache-2.0
#include "fleet/panels/panel_state.h"

#include "protocol/converters.h"
#include "protocol/decode.h"

#include <algorithm>

namespace buttondriver::fleet {

namespace {

/// Does something with the element `index` of `elements`, if there is one.
template <class Elements, class Change> void change(Elements &elements, std::int32_t index, Change change_one) {
  if (index >= 0 && static_cast<std::size_t>(index) < elements.size())
    change_one(elements[static_cast<std::size_t>(index)]);
}

/// Or with each of them for `all`.
template <class Elements, class Change>
void change(Elements &elements, std::int32_t index, std::int32_t all, Change change_one) {
  if (index == all)
    std::for_each(elements.begin(), elements.end(), change_one);
  else
    change(elements, index, change_one);
}

} // namespace

void PanelState::take(ByteView message) {
  switch (message.bigEndian32(0)) {
  case BMS_TFTTextLine::code: {
    const auto head = decode<BMS_TFTTextLine>(message);
    const Line line{std::string(message.text(type_of<BMS_TFTTextLine>.head_size, head.n)), head.flag == 0};
    change(screens, head.screen_id, dimensions::all_screens,
           [&](Screen &screen) { change(screen, head.line_id, [&](Line &place) { place = line; }); });
    break;
  }
  case BMS_BlackoutScreen::code: {
    const auto head = decode<BMS_BlackoutScreen>(message);
    change(screens, head.screen_id, dimensions::all_screens, [](Screen &screen) { screen = {}; });
    break;
  }
  case BMS_SetLEDState::code: {
    const auto head = decode<BMS_SetLEDState>(message);
    const std::int32_t state = head.state == -1 ? -head.time : head.state == 1 ? 1 : 0;
    change(buttons, head.button_id, dimensions::all_buttons, [&](std::int32_t &button) { button = state; });
    break;
  }
  case BMS_SetLEDStatusIndicator::code: {
    const auto head = decode<BMS_SetLEDStatusIndicator>(message);
    change(status, head.button_id, [&](bool &lamp) { lamp = head.state == 1; });
    break;
  }
  case BMS_SetLEDToggleIndicator::code: {
    const auto head = decode<BMS_SetLEDToggleIndicator>(message);
    change(toggles, head.button_id, [&](bool &lamp) { lamp = head.state == 1; });
    break;
  }
  default:
    break;
  }
}

} // namespace buttondriver::fleet
