// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fleet/measure/setting.h"

#include <cstddef>
#include <string>
#include <vector>

namespace buttondriver::fleet {

/// What was done to panels, broker and bridge, and how long it took until all panels showed what they should.
struct Disturbance {
  std::string name; ///< one word, for files
  std::string what;
  std::size_t commands = 0; ///< that were published meanwhile
  double seconds = 0;       ///< from its end; when they never did, until nobody waited any longer
  std::size_t wrong = 0;    ///< panels that did not show it then
};

/// One after the other, with the same panels, broker and bridge. Ends after one that leaves a panel wrong.
/// Throws std::runtime_error when a program does not do its part.
std::vector<Disturbance> run_disturbed(const Setting &setting);

} // namespace buttondriver::fleet
