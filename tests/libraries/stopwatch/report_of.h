// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "stopwatch/stopwatch.h"

#include <sstream>
#include <string>

namespace stopwatch::test {

inline std::string report_of(const Event &event) {
  std::ostringstream stream;
  event.report(stream);
  return stream.str();
}

} // namespace stopwatch::test
