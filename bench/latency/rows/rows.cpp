// SPDX-License-Identifier: Apache-2.0
#include "latency/rows/rows.h"

#include "soak/sample.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace buttondriver::latency {

namespace {

std::string formatted(const char *format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string with_commas(double value) {
  std::string digits = std::to_string(std::llround(value));
  for (int place = static_cast<int>(digits.size()) - 3; place > 0; place -= 3)
    digits.insert(static_cast<std::size_t>(place), 1, ',');
  return digits;
}

} // namespace

const std::array<Row, row_count> &all_rows() {
  static constexpr std::array<Row, row_count> rows = {{
      {RowId::open_command, "open_command", "a command of an open connection, to its transfer", Unit::seconds, 0.25,
       0.12},
      {RowId::first_answer, "first_answer", "a new connection's first answer to a ping", Unit::seconds, 0.1, 0},
      {RowId::new_command, "new_command", "a new connection's command, to its transfer", Unit::seconds, 0.25, 0},
      {RowId::ping, "ping", "a ping of an open connection, to its answer", Unit::seconds, 0.05, 0},
      {RowId::blink_period, "blink_period", "a period of a blinking button, off by", Unit::seconds, 0.15, 0},
      {RowId::blink_step, "blink_step", "four blinking buttons, first to last", Unit::seconds, 0.03, 0},
      {RowId::busy_share, "busy_share", "the device at work", Unit::share, 0.95, 0},
      {RowId::message_rate, "message_rate", "messages of the load", Unit::per_second, 0, 0},
  }};
  return rows;
}

double Values::median() const { return soak::quantile(values, 0.5); }

double Values::worst(Unit unit) const { return soak::quantile(values, unit == Unit::seconds ? 1 : 0); }

bool reaches_goal(const Row &row, const Values &values) {
  if (values.missing > 0)
    return false;
  if (row.unit != Unit::seconds)
    return values.worst(row.unit) >= row.worst_goal;
  return values.worst(row.unit) <= row.worst_goal && (row.median_goal == 0 || values.median() <= row.median_goal);
}

std::string text_of(double value, Unit unit) {
  if (unit == Unit::share)
    return formatted("%.1f %%", value * 100);
  if (unit == Unit::per_second)
    return with_commas(value) + "/s";
  if (value >= 9.95)
    return formatted("%.0f s", value);
  if (value >= 0.9995)
    return formatted("%.1f s", value);
  const double ms = value * 1000;
  return formatted(ms >= 9.95 ? "%.0f ms" : ms >= 0.995 ? "%.1f ms" : "%.2f ms", ms);
}

std::string goal_text(const Row &row) {
  if (row.worst_goal == 0)
    return "";
  if (row.unit != Unit::seconds)
    return "at least " + formatted("%.0f %%", row.worst_goal * 100);
  const std::string worst = text_of(row.worst_goal, row.unit);
  return row.median_goal == 0 ? worst : worst + ", median " + text_of(row.median_goal, row.unit);
}

} // namespace buttondriver::latency
