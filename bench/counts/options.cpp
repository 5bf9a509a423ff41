// SPDX-License-Identifier: Apache-2.0
#include "counts/options.h"

namespace buttondriver::counts {

namespace {

bool add_row(const std::string &name, std::vector<MessageKind> &rows) {
  for (const MessageKind &kind : all_message_kinds())
    if (name == kind.name) {
      rows.push_back(kind);
      return true;
    }
  return false;
}

/// False when there is no such option, or its value makes no sense.
bool read_option(const std::string &name, const std::string &value, Options &options) {
  if (name == "--daemon")
    options.daemon = value;
  else if (name == "--csv")
    options.csv_file = value;
  else if (name == "--hold")
    options.expected_file = value;
  else if (name == "--row")
    return add_row(value, options.rows);
  else
    return false;
  return !value.empty();
}

} // namespace

std::optional<Options> parse_options(const std::vector<std::string> &arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); i += 2)
    if (i + 1 == arguments.size() || !read_option(arguments[i], arguments[i + 1], options))
      return {};
  // The table has all rows, and is for the built daemon.
  if (!options.expected_file.empty() && (!options.rows.empty() || !options.daemon.empty()))
    return {};
  if (options.rows.empty())
    options.rows = all_message_kinds();
  return options;
}

std::string usage() {
  std::string text = "usage: buttondriver_counts [--daemon FILE] [--row NAME]... [--csv FILE]\n"
                     "       buttondriver_counts [--csv FILE] --hold TABLE\nrows:";
  for (const MessageKind &kind : all_message_kinds())
    text += std::string(" ") + kind.name;
  return text + "\n";
}

} // namespace buttondriver::counts
