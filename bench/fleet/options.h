// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fleet/measure/setting.h"

#include <optional>
#include <string>
#include <vector>

namespace buttondriver::fleet {

/// What the command line asks for.
struct Options {
  Setting setting;
  std::string csv_file; ///< empty for none
};

/// Nothing when the command line makes no sense; then usage() helps.
std::optional<Options> parse_options(const std::vector<std::string> &arguments);

std::string usage();

} // namespace buttondriver::fleet
