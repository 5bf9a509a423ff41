// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace buttondriver::soak {

/// A ping with its length before it.
std::string ping_frame();
/// A request to read the level file again.
std::string reconfig_frame();
/// What stands before the colours in the file of an uncompressed picture of 24 bits a pixel and `side` times `side`
/// pixels: at most 128, divisible by 4.
std::string picture_head(std::uint32_t side);
/// A picture of `side` times `side` pixels, at most 128 and divisible by 4, in the corner of the second screen.
std::string picture_frame(std::uint32_t side = 128);
/// A line of 16 characters in each of the eight lines of all screens.
std::string text_line_frames();
/// A status LED, 0 to 31, goes on with a `state` of 1 and off with 0.
std::string status_led_frame(std::uint32_t led, std::uint32_t state);
/// A button's LED changes every `half_period_ms`.
std::string blink_frame(std::uint32_t button, std::uint32_t half_period_ms);
/// Some hundred frames of all other kinds that do something to the panel, and some that do not.
std::string many_small_frames();

} // namespace buttondriver::soak
