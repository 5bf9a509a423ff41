// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sstream>
#include <string>

namespace buttondriver::test {

/// Where two long texts part, as "file:3 is 'a' instead of 'b'"; empty when they are the same. A line that is not there
/// counts as 'missing'.
inline std::string first_difference(const std::string &file, const std::string &is, const std::string &should_be) {
  std::istringstream lines(is);
  std::istringstream wanted_lines(should_be);
  std::string line;
  std::string wanted_line;
  for (int number = 1;; ++number) {
    const bool has_line = static_cast<bool>(std::getline(lines, line));
    const bool has_wanted = static_cast<bool>(std::getline(wanted_lines, wanted_line));
    if (!has_line && !has_wanted)
      return is == should_be ? "" : file + " differs in the end of its last line";
    if (has_line != has_wanted || line != wanted_line)
      return file + ":" + std::to_string(number) + " is '" + (has_line ? line : "missing") + "' instead of '" +
             (has_wanted ? wanted_line : "missing") + "'";
  }
}

} // namespace buttondriver::test
