// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/report/texts.h"

#include <cmath>
#include <cstdio>

namespace buttondriver::yardsticks {

namespace {

/// Three digits, and none after the point from 100 on.
std::string number(double value) {
  const double size = std::fabs(value);
  char text[64];
  std::snprintf(text, sizeof text,
                size >= 99.95   ? "%.0f"
                : size >= 9.995 ? "%.1f"
                : size >= 0.995 ? "%.2f"
                                : "%.3g",
                value);
  return text;
}

/// Three digits, the others zero, with commas between groups of three.
std::string rounded_with_commas(double value) {
  if (value < 99.95)
    return number(value);
  const double step = std::pow(10, std::floor(std::log10(value)) - 2);
  std::string digits = std::to_string(std::llround(std::round(value / step) * step));
  for (int place = static_cast<int>(digits.size()) - 3; place > 0; place -= 3)
    digits.insert(static_cast<std::size_t>(place), 1, ',');
  return digits;
}

std::string time_text(double seconds) {
  const double size = std::fabs(seconds);
  if (size >= 0.9995)
    return number(seconds) + " s";
  if (size >= 0.9995e-3)
    return number(seconds * 1e3) + " ms";
  return size >= 0.9995e-6 ? number(seconds * 1e6) + " µs" : number(seconds * 1e9) + " ns";
}

std::string bytes_text(double bytes) {
  constexpr double kib = 1024;
  const double size = std::fabs(bytes);
  if (size >= kib * kib)
    return number(bytes / (kib * kib)) + " MiB";
  return size >= kib ? number(bytes / kib) + " KiB" : number(bytes) + " bytes";
}

} // namespace

std::string text_of(double value, Unit unit) {
  switch (unit) {
  case Unit::rate:
    return rounded_with_commas(1 / value) + "/s";
  case Unit::seconds:
    return time_text(value);
  case Unit::bytes:
    break;
  }
  return bytes_text(value);
}

namespace {

std::string more_text(double difference, Unit unit) {
  return text_of(std::fabs(difference), unit) + (difference < 0 ? " less" : " more");
}

} // namespace

std::string spread_text(const Spread &spread, Unit unit) {
  // What takes longest has the smallest rate.
  const bool is_turned = unit == Unit::rate;
  return text_of(spread.median, unit) + " (" + text_of(is_turned ? spread.high : spread.low, unit) + " to " +
         text_of(is_turned ? spread.low : spread.high, unit) + ")";
}

std::string outcome_text(const Comparison &row) {
  const Spread spread = spread_of(outcomes_of(row));
  const std::string range = " (" + number(spread.low) + " to " + number(spread.high) + ")";
  switch (row.goal.kind) {
  case Goal::Kind::none:
  case Goal::Kind::at_most_times:
    return number(spread.median) + " times" + range;
  case Goal::Kind::times_as_fast:
    return number(spread.median) + " times as fast" + range;
  case Goal::Kind::at_most_more:
    return more_text(spread.median, row.unit) + " (" + more_text(spread.low, row.unit) + " to " +
           more_text(spread.high, row.unit) + ")";
  case Goal::Kind::at_most:
    break;
  }
  return {};
}

std::string goal_text(const Comparison &row) {
  switch (row.goal.kind) {
  case Goal::Kind::at_most_times:
    return "at most " + number(row.goal.limit) + " times";
  case Goal::Kind::times_as_fast:
    return "at least " + number(row.goal.limit) + " times as fast";
  case Goal::Kind::at_most_more:
    return "at most " + text_of(row.goal.limit, row.unit) + " more";
  case Goal::Kind::at_most:
    return "at most " + text_of(row.goal.limit, row.unit);
  case Goal::Kind::none:
    break;
  }
  return {};
}

} // namespace buttondriver::yardsticks
