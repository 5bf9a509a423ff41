// SPDX-License-Identifier: Apache-2.0
#include "buttons/button_levels.h"

#include "files/owned_file.h"
#include "files/regular_file.h"
#include "files/system_paths.h"
#include "logging/standard_output.h"
#include "logging/visible_text.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace buttondriver {

namespace {

constexpr std::size_t buffer_size = 256;
using Buffer = std::array<char, buffer_size>;

void read_level(const Buffer &line, std::int32_t &level) {
  Buffer word{};
  int number = 0;
  if (std::sscanf(line.data(), "%255s %d", word.data(), &number) == 2)
    level = number;
}

} // namespace

void ButtonLevels::read(const std::string &file_name, const std::function<void(std::int32_t scr)> &on_screen_level) {
  const OwnedFile file = file_of(open_regular_file(file_name.c_str()), "r");
  if (!file)
    return;
  Buffer line{};
  Buffer key{};
  while (!std::feof(file.get()) && !std::ferror(file.get())) {
    if (!std::fgets(line.data(), static_cast<int>(line.size()), file.get()))
      continue;
    if (std::ftell(file.get()) > static_cast<long>(most_button_level_bytes)) {
      print("buttondriver: the level file is too long, not read beyond byte %zu\n", most_button_level_bytes);
      return;
    }
    // An empty line leaves the key of the line before in place, on purpose.
    const int items = std::sscanf(line.data(), "%255s", key.data());
    static_cast<void>(items);
    if (std::strcmp(key.data(), "led") == 0) {
      read_level(line, led);
    } else if (std::strcmp(key.data(), "lcd") == 0) {
      read_level(line, lcd);
    } else if (std::strcmp(key.data(), "scr") == 0) {
      read_level(line, scr);
      on_screen_level(scr);
    } else {
      print("buttondriver:unknown type %s\n", visible_text(key.data()).c_str());
    }
  }
}

} // namespace buttondriver
