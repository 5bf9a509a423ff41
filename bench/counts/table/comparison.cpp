// SPDX-License-Identifier: Apache-2.0
#include "counts/table/comparison.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace buttondriver::counts {

namespace {

const Row *find_row(const Table &table, const std::string &name) {
  const auto found =
      std::find_if(table.rows.begin(), table.rows.end(), [&](const Row &row) { return row.name == name; });
  return found == table.rows.end() ? nullptr : &*found;
}

/// "text_line: 5200 instructions, the table has 4000 (+30.0 %)"
std::string difference(const Row &row, std::size_t column, double expected) {
  char text[160];
  std::snprintf(text, sizeof text, ": %.6g %s, the table has %.6g", row.values[column], all_columns()[column].name,
                expected);
  std::string line = row.name + text;
  if (expected > 0) {
    std::snprintf(text, sizeof text, " (%+.1f %%)", 100 * (row.values[column] / expected - 1));
    line += text;
  }
  return line;
}

void compare_rows(const Row &expected, const Row &seen, Comparison &result) {
  for (std::size_t i = 0; i < column_count; ++i) {
    if (!all_columns()[i].is_held)
      continue;
    const double allowed = tolerance * expected.values[i];
    const double more = seen.values[i] - expected.values[i];
    if (more > allowed)
      result.faults.push_back(difference(seen, i, expected.values[i]));
    else if (more < -allowed)
      result.notes.push_back(difference(seen, i, expected.values[i]));
  }
}

} // namespace

Comparison compare(const Table &expected, const Table &seen) {
  Comparison result;
  for (const Row &row : seen.rows) {
    if (const Row *other = find_row(expected, row.name))
      compare_rows(*other, row, result);
    else
      result.faults.push_back(row.name + ": not in the table");
  }
  for (const Row &row : expected.rows)
    if (!find_row(seen, row.name))
      result.faults.push_back(row.name + ": in the table only");
  return result;
}

} // namespace buttondriver::counts
