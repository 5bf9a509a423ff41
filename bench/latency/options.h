// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "latency/load_kind.h"
#include "latency/measured_run.h"

#include <optional>
#include <string>
#include <vector>

namespace buttondriver::latency {

struct NamedProgram {
  std::string name;
  std::string program;
};

/// What the command line asks for.
struct Options {
  std::vector<NamedProgram> daemons;
  std::vector<LoadKind> loads;
  std::vector<double> transfer_seconds; ///< one device for each
  Tempo tempo;
  bool is_busy = false;
  std::string svg_file; ///< empty for none
  std::string csv_file;
};

/// Nothing when the command line makes no sense; then usage() helps.
std::optional<Options> parse_options(const std::vector<std::string> &arguments);

std::string usage();

} // namespace buttondriver::latency
