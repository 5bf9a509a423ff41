// SPDX-License-Identifier: Apache-2.0
#include "fleet/options.h"

#include <algorithm>
#include <cstdlib>

namespace buttondriver::fleet {

namespace {

bool read_number(const std::string &text, double least, double most, double &number) {
  char *end = nullptr;
  number = std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0' && number >= least && number <= most;
}

/// False when there is no such option, or its value makes no sense.
bool read_option(const std::string &name, const std::string &value, Options &options) {
  Setting &setting = options.setting;
  double number = 0;
  if (name == "--bridge")
    setting.bridge = value;
  else if (name == "--csv")
    options.csv_file = value;
  else if (name == "--panels" && read_number(value, 2, 5000, number))
    setting.panels = static_cast<std::size_t>(number);
  else if (name == "--rate")
    return read_number(value, 1, 1'000'000, setting.commands_per_second);
  else if (name == "--seconds")
    return read_number(value, 0.1, 3600, setting.seconds);
  else if (name == "--rounds" && read_number(value, 1, 100, number))
    setting.rounds = static_cast<int>(number);
  else
    return false;
  return !value.empty();
}

} // namespace

std::optional<Options> parse_options(const std::vector<std::string> &arguments) {
  Options options;
  options.setting.bridge = BUTTONDRIVER_FLEET_BRIDGE;
  if (std::find(arguments.begin(), arguments.end(), "--quick") != arguments.end()) {
    options.setting.panels = 20;
    options.setting.commands_per_second = 1000;
    options.setting.seconds = 1;
    options.setting.rounds = 1;
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--quick")
      continue;
    if (i + 1 == arguments.size() || !read_option(arguments[i], arguments[i + 1], options))
      return {};
    ++i;
  }
  return options;
}

std::string usage() {
  return "buttondriver_fleet [--panels N] [--rate COMMANDS_PER_SECOND] [--seconds N] [--rounds N] [--quick]\n"
         "                   [--bridge PROGRAM] [--csv FILE]\n";
}

} // namespace buttondriver::fleet
