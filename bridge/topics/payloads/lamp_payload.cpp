// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/payloads/lamp_payload.h"

#include "bridge/topics/payloads/shown.h"
#include "bridge/topics/topic_match.h"

#include <limits>

namespace buttondriver::bridge {

namespace {

constexpr LampState on{1, 0};
constexpr LampState off{0, 0};
constexpr std::int32_t blinking = -1;
constexpr std::string_view blink = "blink ";

} // namespace

Outcome<LampState> led_state(std::string_view payload) {
  if (payload == "on")
    return on;
  if (payload == "off")
    return off;
  constexpr std::int64_t longest_phase_ms = std::numeric_limits<std::int32_t>::max();
  std::int64_t phase_ms = 0;
  if (payload.substr(0, blink.size()) == blink &&
      read_number(payload.substr(blink.size()), 1, longest_phase_ms, &phase_ms))
    return LampState{blinking, static_cast<std::int32_t>(phase_ms)};
  return Failure{QStringLiteral("the payload must be 'on', 'off' or 'blink MS' with 1 to %1 milliseconds, not '%2'")
                     .arg(longest_phase_ms)
                     .arg(shown(payload))};
}

Outcome<LampState> on_or_off(std::string_view payload) {
  if (payload == "on")
    return on;
  if (payload == "off")
    return off;
  return Failure{QStringLiteral("the payload must be 'on' or 'off', not '%1'").arg(shown(payload))};
}

} // namespace buttondriver::bridge
