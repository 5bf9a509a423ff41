// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/messages/lamp_commands.h"

#include "buttonctl/messages/sending.h"
#include "dimensions/panel_dimensions.h"
#include "protocol/encoders.h"

#include <limits>

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t highest_button = dimensions::button_count - 1;
constexpr std::int32_t highest_status_indicator = dimensions::led_count - 1;
constexpr std::int32_t highest_toggle_indicator = dimensions::toggle_indicator_count - 1;
constexpr std::int32_t longest_phase_ms = std::numeric_limits<std::int32_t>::max();

// The numbers in the help below.
static_assert(highest_button == 23 && highest_status_indicator == 31 && highest_toggle_indicator == 1);

constexpr std::int32_t led_on = 1;
constexpr std::int32_t led_off = 0;
constexpr std::int32_t led_blinks = -1;

Steps build_led(ArgumentReader &arguments) {
  const std::int32_t button = arguments.numberOrAll("BUTTON", 0, highest_button);
  const QString state = arguments.word("STATE");
  if (state == QLatin1String("on"))
    return send(hton_BMS_SetLEDState(button, led_on, 0));
  if (state == QLatin1String("off"))
    return send(hton_BMS_SetLEDState(button, led_off, 0));
  if (state == QLatin1String("blink"))
    return send(hton_BMS_SetLEDState(button, led_blinks, arguments.number("MS", 1, longest_phase_ms)));
  arguments.fail(QStringLiteral("STATE must be 'on', 'off' or 'blink', not '%1'").arg(state));
  return {};
}

Steps build_status(ArgumentReader &arguments) {
  const std::int32_t indicator = arguments.number("ID", 0, highest_status_indicator);
  return send(hton_BMS_SetLEDStatusIndicator(indicator, arguments.onOrOff()));
}

Steps build_toggle(ArgumentReader &arguments) {
  const std::int32_t indicator = arguments.number("ID", 0, highest_toggle_indicator);
  return send(hton_BMS_SetLEDToggleIndicator(indicator, arguments.onOrOff()));
}

} // namespace

Command led_command() {
  return {"led",
          "BUTTON on|off|blink MS",
          "set a button's LED",
          QStringLiteral(
              "BUTTON is 0 to 23, or all. MS goes with blink only: the length of each phase, lit and dark, 1 to\n"
              "2147483647 milliseconds; the panel works in steps of 20. on and off end blinking.\n"),
          "buttonctl led 5 on\n"
          "buttonctl led 5 blink 500\n"
          "buttonctl led all off\n",
          {},
          build_led};
}

Command status_command() {
  return {"status", "ID on|off", "set a status LED", QStringLiteral("ID is 0 to 31.\n"), "buttonctl status 3 on\n",
          {},       build_status};
}

Command toggle_command() {
  return {
      "toggle", "ID on|off", "set a toggle indicator", QStringLiteral("ID is 0 or 1.\n"), "buttonctl toggle 1 off\n",
      {},       build_toggle};
}

} // namespace buttondriver::buttonctl
