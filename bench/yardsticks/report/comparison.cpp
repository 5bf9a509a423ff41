// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/report/comparison.h"

#include "soak/sample.h"

#include <algorithm>
#include <cmath>

namespace buttondriver::yardsticks {

namespace {

double outcome_of(Goal::Kind kind, double ours, double theirs) {
  switch (kind) {
  case Goal::Kind::none:
  case Goal::Kind::at_most_times:
    return ours / theirs;
  case Goal::Kind::times_as_fast:
    return theirs / ours;
  case Goal::Kind::at_most_more:
    return ours - theirs;
  case Goal::Kind::at_most:
    break;
  }
  return ours;
}

bool is_measured(double value) { return std::isfinite(value) && value > 0; }

} // namespace

Spread spread_of(const std::vector<double> &values) {
  return {soak::quantile(values, 0.25), soak::quantile(values, 0.5), soak::quantile(values, 0.75)};
}

std::vector<double> outcomes_of(const Comparison &row) {
  std::vector<double> outcomes;
  for (std::size_t i = 0; i < std::min(row.ours.size(), row.theirs.size()); ++i)
    outcomes.push_back(outcome_of(row.goal.kind, row.ours[i], row.theirs[i]));
  return outcomes;
}

bool reaches_goal(const Comparison &row) {
  const double median = spread_of(outcomes_of(row)).median;
  if (row.goal.kind == Goal::Kind::none)
    return true;
  return row.goal.kind == Goal::Kind::times_as_fast ? median >= row.goal.limit : median <= row.goal.limit;
}

std::string fault_of(const Comparison &row) {
  if (row.ours.empty())
    return row.name + ": no values";
  if (row.ours.size() != row.theirs.size())
    return row.name + ": not as many values on both sides";
  for (const std::vector<double> *side : {&row.ours, &row.theirs})
    if (!std::all_of(side->begin(), side->end(), is_measured))
      return row.name + ": a value that cannot be";
  return {};
}

} // namespace buttondriver::yardsticks
