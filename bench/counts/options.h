// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "counts/run/message_kinds.h"

#include <optional>
#include <string>
#include <vector>

namespace buttondriver::counts {

struct Options {
  std::string daemon;            ///< the program's file; empty for the built one
  std::vector<MessageKind> rows; ///< which are counted
  std::string csv_file;          ///< gets the table; empty for none
  std::string expected_file;     ///< holds the table that may not be exceeded; empty for none
};

/// `arguments` without the program's name. Nothing when they make no sense.
std::optional<Options> parse_options(const std::vector<std::string> &arguments);

std::string usage();

} // namespace buttondriver::counts
