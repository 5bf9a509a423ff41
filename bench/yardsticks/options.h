// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "yardsticks/measure/groups.h"

#include <optional>
#include <string>
#include <vector>

namespace buttondriver::yardsticks {

/// What the command line asks for.
struct Options {
  Setting setting;
  std::vector<GroupKind> groups;
  bool is_quick = false;
  std::string csv_file;      ///< empty for none
  std::string svg_beginning; ///< of the plots' file names; empty for none
};

/// Nothing when the command line makes no sense; then usage() helps.
std::optional<Options> parse_options(const std::vector<std::string> &arguments);

std::string usage();

} // namespace buttondriver::yardsticks
