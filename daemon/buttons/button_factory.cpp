// SPDX-License-Identifier: Apache-2.0
#include "buttons/button_factory.h"

#include "dimensions/panel_dimensions.h"
#include "logging/standard_output.h"

namespace buttondriver {

void ButtonFactory::createButtons(ButtonMap &buttons, FPGA *fpga) const {
  if (_panel_type < 3 || _panel_type > 5) {
    print("Error: Panel type is invalid - should be RV2400/RV1100/RV1000");
    return;
  }
  ButtonMap created;
  for (std::int32_t id = 0; id < dimensions::button_count; ++id)
    insertButton(created, id, new Button_RV1000E(false, id, fpga)); // the map's owner deletes it
  buttons = created;
}

bool ButtonFactory::insertButton(ButtonMap &buttons, std::int32_t id, IButton *button) {
  const auto [place, inserted] = buttons.emplace(id, button);
  if (inserted || place->second == button)
    return true;
  print("error: overwriting exiting button, id = %d\n", id);
  return false;
}

} // namespace buttondriver
