// SPDX-License-Identifier: Apache-2.0
#include "counts/table/table.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace buttondriver::counts {

namespace {

std::vector<std::string> cells_of(const std::string &line) {
  std::vector<std::string> cells;
  std::istringstream stream(line);
  for (std::string cell; std::getline(stream, cell, ',');)
    cells.push_back(cell);
  return cells;
}

std::size_t place_of(const std::string &column) {
  for (std::size_t i = 0; i < column_count; ++i)
    if (column == all_columns()[i].name)
      return i;
  throw std::runtime_error("no such column: " + column);
}

double number_of(const std::string &cell) {
  char *end = nullptr;
  const double value = std::strtod(cell.c_str(), &end);
  if (cell.empty() || *end != '\0')
    throw std::runtime_error("no number: " + cell);
  return value;
}

Row row_of(const std::vector<std::string> &columns, const std::vector<std::string> &cells) {
  if (cells.size() != columns.size())
    throw std::runtime_error("too many columns, or too few: " + (cells.empty() ? "an empty line" : cells[0]));
  Row row{cells[0], {}};
  for (std::size_t i = 1; i < cells.size(); ++i)
    row.values[place_of(columns[i])] = number_of(cells[i]);
  return row;
}

} // namespace

Table table_of(std::string_view csv) {
  std::istringstream lines{std::string(csv)};
  std::string line;
  if (!std::getline(lines, line) || line.rfind("# ", 0) != 0)
    throw std::runtime_error("the table does not begin with the build that it holds for");
  Table table{line.substr(2), {}};
  std::getline(lines, line);
  const std::vector<std::string> columns = cells_of(line);
  if (columns.empty() || columns[0] != "message")
    throw std::runtime_error("the table has no names of columns");
  while (std::getline(lines, line))
    table.rows.push_back(row_of(columns, cells_of(line)));
  return table;
}

} // namespace buttondriver::counts
