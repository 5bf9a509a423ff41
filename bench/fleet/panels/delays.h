// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace buttondriver::fleet {

/// Now as a text of 16 characters, a line of a screen: nanoseconds of CLOCK_MONOTONIC, in hexadecimal.
std::string stamp_now();
/// How many nanoseconds ago the text was made; nothing for a text of another kind.
std::optional<std::int64_t> age_of(std::string_view stamp);

/// How long things took, in seconds.
struct Delays {
  std::size_t count = 0;
  double median = 0;
  double p99 = 0; ///< 99 of 100 took at most so long
  double longest = 0;
};

/// Of single times in nanoseconds, in any order.
Delays delays_of(std::vector<std::int64_t> nanoseconds);

} // namespace buttondriver::fleet
