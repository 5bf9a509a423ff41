// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace buttondriver::latency {

/// What other clients do while one person's commands are measured.
struct LoadKind {
  const char *name; ///< one word, for the command line and files
  const char *title;
  int clients;
  std::string (*frames)(); ///< what each of them sends over and over
};

/// idle, picture, pictures, text, texts.
const std::vector<LoadKind> &all_load_kinds();

} // namespace buttondriver::latency
