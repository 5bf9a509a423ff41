// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>
#include <vector>

namespace buttondriver::test {

/// Random choices that are the same for the same seed, on every machine.
class Dice {
public:
  explicit Dice(std::uint64_t seed) : _engine(seed) {}

  /// 0 to `count` - 1.
  std::uint32_t below(std::uint32_t count) { return static_cast<std::uint32_t>(_engine() % count); }
  std::int32_t between(std::int32_t first, std::int32_t last) {
    return first + static_cast<std::int32_t>(below(static_cast<std::uint32_t>(last - first + 1)));
  }
  bool chance(std::uint32_t percent) { return below(100) < percent; }
  std::uint32_t word() { return static_cast<std::uint32_t>(_engine()); }
  template <class Value> Value one_of(std::initializer_list<Value> values) {
    return values.begin()[below(static_cast<std::uint32_t>(values.size()))];
  }

private:
  std::mt19937_64 _engine;
};

} // namespace buttondriver::test
