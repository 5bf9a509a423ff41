// SPDX-License-Identifier: Apache-2.0
#include "counts/table/table.h"

#include <cmath>
#include <cstdio>

namespace buttondriver::counts {

namespace {

std::string formatted(const char *format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string for_people(double value) {
  const bool is_whole = value >= 100 || std::abs(value - std::round(value)) < 0.005;
  return formatted(is_whole ? "%.0f" : value < 1 ? "%.3f" : "%.2f", value);
}

} // namespace

const std::array<ColumnKind, column_count> &all_columns() {
  static constexpr std::array<ColumnKind, column_count> columns = {{
      {"instructions", true},
      {"allocations", true},
      {"log_writes", true},
      {"transfers", true},
      {"sends", true},
      {"reads", false},
      {"polls", false},
      {"futexes", false},
      {"others", false},
  }};
  return columns;
}

Row row_of(const std::string &name, const Row &before, const Row &after, double messages) {
  Row row{name, {}};
  for (std::size_t i = 0; i < column_count; ++i)
    row.values[i] = (after.values[i] - before.values[i]) / messages;
  return row;
}

std::string csv_of(const Table &table) {
  std::string text = "# " + table.build + "\nmessage";
  for (const ColumnKind &column : all_columns())
    if (column.is_held)
      text += std::string(",") + column.name;
  text += '\n';
  for (const Row &row : table.rows) {
    text += row.name;
    for (std::size_t i = 0; i < column_count; ++i)
      if (all_columns()[i].is_held)
        text += ',' + formatted(i == 0 ? "%.0f" : "%.6g", row.values[i]);
    text += '\n';
  }
  return text;
}

std::string markdown_of(const Table &table) {
  std::string text = "| Message |";
  std::string rule = "|---|";
  for (const ColumnKind &column : all_columns()) {
    text += std::string(" ") + column.name + " |";
    rule += "--:|";
  }
  text += '\n' + rule + '\n';
  for (const Row &row : table.rows) {
    text += "| `" + row.name + "` |";
    for (const double value : row.values)
      text += ' ' + for_people(value) + " |";
    text += '\n';
  }
  return text + "\nOne message each; " + table.build + ".\n";
}

} // namespace buttondriver::counts
