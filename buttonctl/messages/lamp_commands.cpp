// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/messages/lamp_commands.h"

#include "buttonctl/messages/sending.h"
#include "dimensions/panel_dimensions.h"
#include "protocol/encoders.h"

#include <limits>
#include <numeric>
#include <vector>

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
/// As the protocol has it: one message for all.
constexpr std::int32_t all_buttons = -1;

/// A message for each id, in their order.
template <class MakeMessage> Steps send_each(const std::vector<std::int32_t> &ids, MakeMessage make_message) {
  Steps steps;
  for (const std::int32_t id : ids)
    steps.push_back(send(make_message(id)).front());
  return steps;
}

/// "0-5,9", or all ids, for which the protocol has no word of its own.
std::vector<std::int32_t> read_ids(ArgumentReader &arguments, std::int32_t highest) {
  if (const auto ids = arguments.numbersOrAll("ID", 0, highest))
    return *ids;
  std::vector<std::int32_t> all(static_cast<std::size_t>(highest) + 1);
  std::iota(all.begin(), all.end(), 0);
  return all;
}

Steps build_led(ArgumentReader &arguments) {
  const auto buttons = arguments.numbersOrAll("BUTTON", 0, highest_button).value_or(std::vector{all_buttons});
  const QString word = arguments.word("STATE");
  std::int32_t state = led_off;
  std::int32_t phase_ms = 0;
  if (word == QLatin1String("blink")) {
    state = led_blinks;
    phase_ms = arguments.number("MS", 1, longest_phase_ms);
  } else if (word == QLatin1String("on")) {
    state = led_on;
  } else if (word != QLatin1String("off")) {
    arguments.fail(QStringLiteral("STATE must be 'on', 'off' or 'blink', not '%1'").arg(word));
  }
  return send_each(buttons, [=](std::int32_t button) { return hton_BMS_SetLEDState(button, state, phase_ms); });
}

Steps build_status(ArgumentReader &arguments) {
  const std::vector<std::int32_t> ids = read_ids(arguments, highest_status_indicator);
  const std::int32_t lit = arguments.onOrOff();
  return send_each(ids, [=](std::int32_t id) { return hton_BMS_SetLEDStatusIndicator(id, lit); });
}

Steps build_toggle(ArgumentReader &arguments) {
  const std::vector<std::int32_t> ids = read_ids(arguments, highest_toggle_indicator);
  const std::int32_t lit = arguments.onOrOff();
  return send_each(ids, [=](std::int32_t id) { return hton_BMS_SetLEDToggleIndicator(id, lit); });
}

} // namespace

Command led_command() {
  return {"led",
          "BUTTON on|off|blink MS",
          "set a button's LED",
          QStringLiteral(
              "BUTTON is 0 to 23, a list such as 0-5,9, or all; a list becomes a message for each button, in its\n"
              "order. MS goes with blink only: the length of each phase, lit and dark, 1 to 2147483647\n"
              "milliseconds; the panel works in steps of 20. on and off end blinking.\n"),
          "buttonctl led 5 on\n"
          "buttonctl led 0-5,9 blink 500\n"
          "buttonctl led all off\n",
          {},
          build_led};
}

Command status_command() {
  return {"status",
          "ID on|off",
          "set a status LED",
          QStringLiteral("ID is 0 to 31, a list such as 0-5,9, or all; each becomes a message, in their order.\n"),
          "buttonctl status 3 on\n"
          "buttonctl status all off\n",
          {},
          build_status};
}

Command toggle_command() {
  return {"toggle",
          "ID on|off",
          "set a toggle indicator",
          QStringLiteral("ID is 0 or 1, a list such as 0,1, or all; each becomes a message, in their order.\n"),
          "buttonctl toggle 1 off\n",
          {},
          build_toggle};
}

} // namespace buttondriver::buttonctl
