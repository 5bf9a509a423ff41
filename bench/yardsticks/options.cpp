// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/options.h"

#include <algorithm>

namespace buttondriver::yardsticks {

namespace {

constexpr Scale full_scale = {21, 9, 100'000, 20'000, 2'000, 2'000, 2'000, 900, 9};
// As many connections as make a difference of memory that is more than a few pages.
constexpr Scale quick_scale = {5, 1, 2'000, 500, 50, 50, 50, 201, 3};

bool add_group(const std::string &name, std::vector<GroupKind> &groups) {
  for (const GroupKind &kind : all_group_kinds())
    if (name == kind.name) {
      groups.push_back(kind);
      return true;
    }
  return false;
}

/// False when there is no such option, or its value makes no sense.
bool read_option(const std::string &name, const std::string &value, Options &options) {
  if (name == "--daemon")
    options.setting.daemon = value;
  else if (name == "--lcdd")
    options.setting.lcdd = value;
  else if (name == "--group")
    return add_group(value, options.groups);
  else if (name == "--csv")
    options.csv_file = value;
  else if (name == "--svg")
    options.svg_beginning = value;
  else
    return false;
  return !value.empty();
}

} // namespace

std::optional<Options> parse_options(const std::vector<std::string> &arguments) {
  Options options;
  options.is_quick = std::find(arguments.begin(), arguments.end(), "--quick") != arguments.end();
  options.setting = {BUTTONDRIVER_YARDSTICK_DAEMON, "", options.is_quick ? quick_scale : full_scale};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--quick")
      continue;
    if (i + 1 == arguments.size() || !read_option(arguments[i], arguments[i + 1], options))
      return {};
    ++i;
  }
  const bool is_lcdd_there = !options.setting.lcdd.empty();
  if (options.groups.empty())
    for (const GroupKind &kind : all_group_kinds())
      if (is_lcdd_there || kind.name != std::string("lcdd"))
        options.groups.push_back(kind);
  const auto is_lcdd = [](const GroupKind &kind) { return kind.name == std::string("lcdd"); };
  if (!is_lcdd_there && std::any_of(options.groups.begin(), options.groups.end(), is_lcdd))
    return {};
  return options;
}

std::string usage() {
  std::string text = "usage: buttondriver_yardsticks [--quick] [--daemon PATH] [--lcdd FOLDER] [--group NAME]... "
                     "[--csv FILE] [--svg BEGINNING]\ngroups:";
  for (const GroupKind &kind : all_group_kinds())
    text += std::string(" ") + kind.name;
  return text + "\n";
}

} // namespace buttondriver::yardsticks
