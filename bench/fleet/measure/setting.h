// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

namespace buttondriver::fleet {

/// What is measured, and how much of it.
struct Setting {
  std::string bridge; ///< the program
  std::size_t panels = 1000;
  double commands_per_second = 10'000;
  double seconds = 5; ///< of each load
  int rounds = 5;     ///< of both sides

  std::size_t commands() const { return static_cast<std::size_t>(commands_per_second * seconds); }
};

} // namespace buttondriver::fleet
