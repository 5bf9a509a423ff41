// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace buttondriver {

/// Length of a blink tick: the timer's interval, and what milliseconds are divided by to give ticks.
inline constexpr std::int32_t blink_tick_ms = 20;

/// How far a blinking button is in its period. Each phase lasts as many whole ticks as fit its time, at least one.
class BlinkState {
public:
  /// Both phases last `time` milliseconds. A negative time gives phases of negative length: then every tick starts the
  /// period again and shows the second value.
  explicit BlinkState(std::int32_t time) : _on_time(time), _off_time(time) {}

  /// What it was made with.
  std::int32_t time() const { return _on_time; }

  /// The LED value to send at this tick; nothing while the phase goes on.
  std::optional<std::uint8_t> tick() {
    const std::int64_t on_ticks = ticks(_on_time);
    const std::int64_t period = on_ticks + ticks(_off_time);
    if (_counter >= period)
      _counter = 0;
    const std::int32_t now = _counter++;
    if (now != 0 && now != on_ticks)
      return std::nullopt;
    return _values[now >= on_ticks ? 1 : 0];
  }

private:
  static constexpr std::int32_t ticks(std::int32_t time) {
    const std::int32_t whole = time / blink_tick_ms;
    return whole == 0 ? 1 : whole;
  }

  std::array<std::uint8_t, 2> _values{0, 1};
  std::int32_t _on_time;
  std::int32_t _off_time;
  std::int32_t _counter = 0;
};

} // namespace buttondriver
