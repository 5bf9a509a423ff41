// SPDX-License-Identifier: Apache-2.0
#include "latency/options.h"

#include <algorithm>
#include <cstdlib>

namespace buttondriver::latency {

namespace {

constexpr Tempo full_tempo = {1, 10, 1, 60, 200, 30, 130};
// The blinking is faster, so that it has periods within so short a time.
constexpr Tempo quick_tempo = {0.1, 0.3, 0.1, 60, 40, 5, 25};
constexpr double slow_transfer = 2e-3;
constexpr double quick_slow_transfer = 1e-4;

/// Of the form PATH or NAME=PATH.
NamedProgram named_program(const std::string &text) {
  const std::size_t place = text.find('=');
  if (place == std::string::npos)
    return {text.substr(text.rfind('/') + 1), text};
  return {text.substr(0, place), text.substr(place + 1)};
}

bool add_load(const std::string &name, std::vector<LoadKind> &loads) {
  for (const LoadKind &kind : all_load_kinds())
    if (name == kind.name) {
      loads.push_back(kind);
      return true;
    }
  return false;
}

bool read_seconds(const std::string &text, double &seconds) {
  char *end = nullptr;
  seconds = std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0' && seconds > 0 && seconds <= 3600;
}

bool are_names_distinct(const std::vector<NamedProgram> &daemons) {
  for (std::size_t i = 0; i < daemons.size(); ++i)
    for (std::size_t j = 0; j < i; ++j)
      if (daemons[i].name == daemons[j].name)
        return false;
  return true;
}

/// False when there is no such option, or its value makes no sense.
bool read_option(const std::string &name, const std::string &value, Options &options) {
  if (name == "--daemon")
    options.daemons.push_back(named_program(value));
  else if (name == "--svg")
    options.svg_file = value;
  else if (name == "--csv")
    options.csv_file = value;
  else if (name == "--load")
    return add_load(value, options.loads);
  else if (name == "--seconds")
    return read_seconds(value, options.tempo.seconds);
  else if (name == "--limit")
    return read_seconds(value, options.tempo.limit_seconds);
  else
    return false;
  return !value.empty();
}

} // namespace

std::optional<Options> parse_options(const std::vector<std::string> &arguments) {
  const bool is_quick = std::find(arguments.begin(), arguments.end(), "--quick") != arguments.end();
  Options options;
  options.tempo = is_quick ? quick_tempo : full_tempo;
  options.transfer_seconds = {is_quick ? quick_slow_transfer : slow_transfer, 0};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--quick")
      continue;
    if (arguments[i] == "--busy")
      options.is_busy = true;
    else if (i + 1 == arguments.size() || !read_option(arguments[i], arguments[i + 1], options))
      return {};
    else
      ++i;
  }
  if (options.daemons.empty())
    options.daemons.push_back({"", BUTTONDRIVER_LATENCY_DAEMON});
  if (options.loads.empty())
    options.loads = all_load_kinds();
  return are_names_distinct(options.daemons) ? std::optional(options) : std::nullopt;
}

std::string usage() {
  std::string text =
      "usage: buttondriver_latency [--quick] [--busy] [--daemon [NAME=]PATH]... [--load NAME]... [--seconds N] "
      "[--limit N] [--svg FILE] [--csv FILE]\nloads:";
  for (const LoadKind &kind : all_load_kinds())
    text += std::string(" ") + kind.name;
  return text + "\n";
}

} // namespace buttondriver::latency
