// SPDX-License-Identifier: Apache-2.0
#include "fleet/panels/delays.h"

#include <algorithm>
#include <charconv>
#include <ctime>

namespace buttondriver::fleet {

namespace {

constexpr std::size_t stamp_size = 16;

std::int64_t now_ns() {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

} // namespace

std::string stamp_now() {
  char digits[stamp_size];
  const auto end = std::to_chars(digits, digits + stamp_size, now_ns(), 16).ptr;
  const auto count = static_cast<std::size_t>(end - digits);
  return std::string(stamp_size - count, '0').append(digits, count);
}

std::optional<std::int64_t> age_of(std::string_view stamp) {
  std::int64_t then = 0;
  const auto [end, error] = std::from_chars(stamp.data(), stamp.data() + stamp.size(), then, 16);
  if (stamp.size() != stamp_size || error != std::errc() || end != stamp.data() + stamp_size || then < 0)
    return {};
  return now_ns() - then;
}

Delays delays_of(std::vector<std::int64_t> nanoseconds) {
  if (nanoseconds.empty())
    return {};
  std::sort(nanoseconds.begin(), nanoseconds.end());
  // The smallest one that so many of a hundred do not exceed.
  const auto at = [&](std::size_t percent) {
    return static_cast<double>(nanoseconds[(nanoseconds.size() * percent + 99) / 100 - 1]) * 1e-9;
  };
  return {nanoseconds.size(), at(50), at(99), at(100)};
}

} // namespace buttondriver::fleet
