// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace buttondriver::latency {

/// What is measured, in the order of the table.
enum class RowId {
  open_command,
  first_answer,
  new_command,
  ping,
  blink_period,
  blink_step,
  busy_share,
  message_rate,
};
inline constexpr std::size_t row_count = 8;

enum class Unit { seconds, share, per_second };

/// One thing that is measured, and its goal.
struct Row {
  RowId id;
  const char *name; ///< one word, for files
  const char *title;
  Unit unit;
  double worst_goal;  ///< for the worst value; 0 for none
  double median_goal; ///< 0 for none
};

const std::array<Row, row_count> &all_rows();

/// The values of one row in one run: seconds, a share from 0 to 1, or a number per second.
struct Values {
  std::vector<double> values;
  unsigned missing = 0;      ///< what has not come
  double waited_seconds = 0; ///< how long the missing was waited for; 0 where there is no such limit

  double median() const;
  /// The longest time, the smallest share or rate; 0 without values.
  double worst(Unit unit) const;
};

/// Whether the values are as good as the row's goal has it. One that is missing is not; rows without a goal are.
bool reaches_goal(const Row &row, const Values &values);

/// A value for people, with two digits or three: "4.1 ms", "22 s", "97 %", "1,234/s".
std::string text_of(double value, Unit unit);
/// The goal for people; "" when there is none.
std::string goal_text(const Row &row);

} // namespace buttondriver::latency
