// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace buttondriver::yardsticks {

/// What the values of a row are.
enum class Unit {
  rate,    ///< seconds for one of many that are done in a row; shown as so many in a second
  seconds, ///< for one that is waited for
  bytes,
};

/// How ours should do against the yardstick.
struct Goal {
  enum class Kind {
    none,          ///< the ratio is told
    at_most_times, ///< ours / theirs is at most `limit`
    times_as_fast, ///< theirs / ours is at least `limit`
    at_most_more,  ///< ours - theirs is at most `limit`, in the row's unit
    at_most,       ///< ours is at most `limit`, whatever theirs is
  } kind = Kind::none;
  double limit = 0;
};

/// One thing that is measured of ours and of a yardstick in turn. Both have as many values: value i of the one was
/// taken right before or after value i of the other.
struct Comparison {
  std::string name; ///< one word, for files
  std::string title;
  std::string yardstick; ///< what ours is compared with
  Unit unit = Unit::seconds;
  Goal goal;
  std::vector<double> ours;
  std::vector<double> theirs;
};

/// Comparisons of one kind; a chapter of the page.
struct Group {
  std::string name; ///< one word, for the command line and files
  std::string title;
  std::string introduction; ///< Markdown
  std::vector<Comparison> rows;
};

/// Where the middle half of some values lies.
struct Spread {
  double low;
  double median;
  double high;
};
/// All 0 without values.
Spread spread_of(const std::vector<double> &values);

/// What the goal speaks of, for each pair of values: a ratio, a difference, or our value.
std::vector<double> outcomes_of(const Comparison &row);

/// Whether the median of the outcomes is as good as the goal has it; rows without a goal are.
bool reaches_goal(const Comparison &row);

/// What is wrong with the values, however fast anything was: none, not as many on both sides, or no numbers above 0.
/// Empty for nothing.
std::string fault_of(const Comparison &row);

} // namespace buttondriver::yardsticks
