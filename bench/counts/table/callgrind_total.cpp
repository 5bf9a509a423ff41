// SPDX-License-Identifier: Apache-2.0
#include "counts/table/callgrind_total.h"

#include <charconv>
#include <cstdint>
#include <stdexcept>

namespace buttondriver::counts {

double callgrind_total(std::string_view dump) {
  constexpr std::string_view label = "\ntotals: ";
  const std::size_t place = dump.find(label);
  std::uint64_t total = 0;
  if (place != std::string_view::npos) {
    const std::string_view digits = dump.substr(place + label.size());
    if (std::from_chars(digits.data(), digits.data() + digits.size(), total).ec == std::errc())
      return static_cast<double>(total);
  }
  throw std::runtime_error("callgrind tells no number of instructions");
}

} // namespace buttondriver::counts
