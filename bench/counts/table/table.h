// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace buttondriver::counts {

/// The columns, in the order in which they stand.
enum class Column : std::size_t {
  instructions,
  allocations,
  log_writes,
  transfers,
  sends,
  reads,
  polls,
  futexes,
  others
};
inline constexpr std::size_t column_count = 9;

struct ColumnKind {
  const char *name;
  bool is_held; ///< repeats from run to run, whatever else the machine does
};

/// The kind of each column, in their order.
const std::array<ColumnKind, column_count> &all_columns();

/// What one message of a kind costs.
struct Row {
  std::string name;
  std::array<double, column_count> values{};

  double operator[](Column column) const { return values[static_cast<std::size_t>(column)]; }
  double &operator[](Column column) { return values[static_cast<std::size_t>(column)]; }
};

struct Table {
  std::string build; ///< for which builds the numbers hold, one line
  std::vector<Row> rows;
};

/// What a message costs: the difference of two totals, divided by how many messages lie between them.
Row row_of(const std::string &name, const Row &before, const Row &after, double messages);

/// The held columns of the rows, comma separated under a line with their names, after a line with the build.
std::string csv_of(const Table &table);

/// The reverse; columns that are not there are 0. Throws std::runtime_error when the text is no such table.
Table table_of(std::string_view csv);

/// All columns, for people.
std::string markdown_of(const Table &table);

} // namespace buttondriver::counts
