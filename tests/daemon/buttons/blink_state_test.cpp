// SPDX-License-Identifier: Apache-2.0
#include "buttons/blink_state.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace buttondriver {
namespace {

/// One character a tick: the value sent, or a dot while the phase goes on.
std::string ticks(std::int32_t time, int count) {
  BlinkState blink(time);
  std::string shown;
  for (int i = 0; i < count; ++i) {
    const std::optional<std::uint8_t> value = blink.tick();
    shown += value ? static_cast<char>('0' + *value) : '.';
  }
  return shown;
}

TEST(BlinkStateTest, sends_one_value_a_phase) {
  struct Row {
    std::int32_t time;
    const char *expected;
  };
  const Row rows[] = {
      {1, "01010101"},
      {19, "01010101"},
      {20, "01010101"},
      {39, "01010101"},
      {40, "0.1.0.1.0."},
      {60, "0..1..0..1..0"},
      {100, "0....1....0....1"},
      {-1, "0101"},
      {-19, "0101"},
      {-20, "1111"},
      {-500, "1111"},
      {std::numeric_limits<std::int32_t>::min(), "1111"},
      {std::numeric_limits<std::int32_t>::max(), "0......."},
  };
  for (const Row &row : rows)
    EXPECT_EQ(ticks(row.time, static_cast<int>(std::string(row.expected).size())), row.expected) << row.time;
}

TEST(BlinkStateTest, a_second_is_fifty_ticks) {
  const std::string phase = std::string(49, '.');
  EXPECT_EQ(ticks(1000, 150), "0" + phase + "1" + phase + "0" + phase);
}

} // namespace
} // namespace buttondriver
