// SPDX-License-Identifier: Apache-2.0
#include "latency/rows/blinking.h"

#include "panel/registers/registers.h"

#include <algorithm>
#include <cstdlib>

namespace buttondriver::latency {

namespace {

constexpr double seconds_per_ns = 1e-9;

/// The command that sets a button's LED.
std::uint8_t button_command(int button, bool is_on) {
  using namespace panel::led_command_bits;
  return static_cast<std::uint8_t>(static_cast<unsigned>(button) + button_led + (is_on ? on : 0));
}

std::vector<std::int64_t> times_of(const std::vector<LedCommand> &commands, std::uint8_t command) {
  std::vector<std::int64_t> times;
  for (const LedCommand &any : commands)
    if (any.command == command)
      times.push_back(any.at_ns);
  return times;
}

/// The one of `times` that is nearest to `time`; `time` plus `farthest` plus one when none is near enough.
std::int64_t nearest(const std::vector<std::int64_t> &times, std::int64_t time, std::int64_t farthest) {
  std::int64_t best = time + farthest + 1;
  for (const std::int64_t other : times)
    if (std::abs(other - time) < std::abs(best - time))
      best = other;
  return best;
}

void add_spreads(const std::vector<LedCommand> &commands, const Blinking &blinking, const Window &window, bool is_on,
                 Values &spreads) {
  std::vector<std::vector<std::int64_t>> times;
  times.reserve(static_cast<std::size_t>(blinking.buttons));
  for (int button = 0; button < blinking.buttons; ++button)
    times.push_back(times_of(commands, button_command(button, is_on)));
  for (const std::int64_t time : times.front()) {
    if (time < window.from_ns || time > window.to_ns - blinking.half_period_ns)
      continue;
    std::int64_t first = time;
    std::int64_t last = time;
    for (const auto &others : times) {
      const std::int64_t other = nearest(others, time, blinking.half_period_ns);
      first = std::min(first, other);
      last = std::max(last, other);
    }
    if (last > time + blinking.half_period_ns)
      ++spreads.missing;
    else
      spreads.values.push_back(static_cast<double>(last - first) * seconds_per_ns);
  }
}

} // namespace

bool is_change_of_button(const LedCommand &command, int button) {
  return command.command == button_command(button, true) || command.command == button_command(button, false);
}

Values period_deviations(const std::vector<LedCommand> &commands, const Blinking &blinking, const Window &window) {
  Values deviations;
  const std::int64_t period_ns = 2 * blinking.half_period_ns;
  const auto add = [&](std::int64_t length_ns) {
    deviations.values.push_back(static_cast<double>(std::abs(length_ns - period_ns)) * seconds_per_ns);
  };
  for (int button = 0; button < blinking.buttons; ++button) {
    const std::vector<std::int64_t> times = times_of(commands, button_command(button, true));
    std::int64_t last = window.from_ns - period_ns;
    for (std::size_t i = 0; i < times.size() && times[i] <= window.to_ns; ++i) {
      if (i > 0 && times[i] >= window.from_ns)
        add(times[i] - times[i - 1]);
      last = times[i];
    }
    if (window.to_ns - last > period_ns)
      add(window.to_ns - last);
  }
  return deviations;
}

Values step_spreads(const std::vector<LedCommand> &commands, const Blinking &blinking, const Window &window) {
  Values spreads;
  add_spreads(commands, blinking, window, true, spreads);
  add_spreads(commands, blinking, window, false, spreads);
  return spreads;
}

} // namespace buttondriver::latency
