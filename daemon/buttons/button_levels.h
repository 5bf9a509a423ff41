// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace buttondriver {

/// Brightness levels in percent, as the button level file has them; they are taken as read, in range or not.
struct ButtonLevels {
  std::int32_t led = 100;
  std::int32_t lcd = 100;
  std::int32_t scr = 100;

  /// Takes over what `file` says, line by line: a word, "led", "lcd" or "scr", and a number. A line without a readable
  /// number leaves the level as it was; an empty line counts as its predecessor's word without a number; unknown words
  /// are printed. `on_screen_level` is called for each "scr" line, with or without a number.
  /// Lines that do not end within the first `most_button_level_bytes` are not read; that is printed. A file that
  /// cannot be read, or is no regular file, changes nothing.
  void read(const std::string &file, const std::function<void(std::int32_t scr)> &on_screen_level);
};

} // namespace buttondriver
