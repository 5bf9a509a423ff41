// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <cstdint>
#include <string_view>

namespace buttondriver::bridge {

/// What a lamp is to do, in the numbers of the messages.
struct LampState {
  std::int32_t state = 0;    ///< 1: on, 0: off, -1: blinking
  std::int32_t phase_ms = 0; ///< each phase of blinking
};

/// "on", "off" or "blink MS", of 1 ms or more.
Outcome<LampState> led_state(std::string_view payload);
/// "on" or "off".
Outcome<LampState> on_or_off(std::string_view payload);

} // namespace buttondriver::bridge
