// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/report/plot.h"

#include "support/svg.h"
#include "yardsticks/report/texts.h"

#include <cmath>
#include <fstream>
#include <optional>

namespace buttondriver::yardsticks {

namespace {

constexpr double labels_width = 420;
constexpr double axis_width = 520;
constexpr double right_margin = 40;
constexpr double top = 60;
constexpr double mark_height = 10;
constexpr double row_gap = 8;
constexpr double group_head = 26;
constexpr double bottom = 20;

/// A row of a plot: marks under each other, one in each colour.
struct PlotRow {
  std::string title;
  std::vector<Spread> marks;
  std::optional<double> goal;
};
struct PlotGroup {
  std::string title;
  std::vector<PlotRow> rows;
};
struct Plot {
  std::vector<std::string> colours; ///< what the colours stand for
  std::vector<PlotGroup> groups;
  std::string (*tick_text)(double value);
  bool has_goals;
};

std::string ratio_text(double value) {
  return value < 1 ? "1/" + std::to_string(std::lround(1 / value)) : std::to_string(std::lround(value));
}

/// Without the digits after the point: "10 µs" of "10.0 µs".
std::string time_text(double seconds) {
  const std::string text = text_of(seconds, Unit::seconds);
  return text.substr(0, std::min(text.find('.'), text.find(' '))) + text.substr(text.find(' '));
}

/// The powers of ten that have all marks and goals between them. What has no place on the axis, as 0, counts for
/// nothing: it is a fault of a run, and must not make a plot without end.
struct Decades {
  int first = 0;
  int last = 1;
};
Decades decades_of(const Plot &plot) {
  Decades decades{1000, -1000};
  const auto add = [&](double value) {
    if (!std::isnormal(value) || value < 0)
      return;
    decades.first = std::min(decades.first, static_cast<int>(std::floor(std::log10(value))));
    decades.last = std::max(decades.last, static_cast<int>(std::ceil(std::log10(value))));
  };
  for (const PlotGroup &group : plot.groups)
    for (const PlotRow &row : group.rows) {
      for (const Spread &mark : row.marks) {
        add(mark.low);
        add(mark.high);
      }
      add(row.goal.value_or(row.marks.front().median));
    }
  return decades.first < decades.last ? decades : Decades{};
}

void draw_head(std::ostream &svg, const Plot &plot) {
  double x = 16;
  for (std::size_t i = 0; i < plot.colours.size(); ++i) {
    bench::draw_mark(svg, i, x + 11, {x, x + 22}, 20);
    x = bench::draw_entry(svg, x, 24, plot.colours[i] + ": median and quartiles", bench::colour_class(i));
  }
  if (!plot.has_goals)
    return;
  bench::draw_goal(svg, x + 20, 14, 12);
  bench::draw_entry(svg, x, 24, "goal: left of it", "faint");
}

void draw_row(std::ostream &svg, const PlotRow &row, const bench::LogarithmicAxis &axis, double y) {
  const double height = mark_height * static_cast<double>(row.marks.size());
  svg << "<text x='16' y='" << y + height / 2 + 4 << "'>" << row.title << "</text>\n";
  const auto place = [&](double value) { return labels_width + axis.placeOf(value); };
  if (row.goal)
    bench::draw_goal(svg, place(*row.goal), y, height);
  for (std::size_t i = 0; i < row.marks.size(); ++i)
    bench::draw_mark(svg, i, place(row.marks[i].median), {place(row.marks[i].low), place(row.marks[i].high)},
                     y + mark_height * (static_cast<double>(i) + 0.5));
}

bool write_plot(const std::string &file, const Plot &plot) {
  const double row_height = mark_height * static_cast<double>(plot.colours.size()) + row_gap;
  double height = top + bottom;
  for (const PlotGroup &group : plot.groups)
    height += group_head + row_height * static_cast<double>(group.rows.size());
  const Decades decades = decades_of(plot);
  const bench::LogarithmicAxis axis(std::pow(10, decades.first), std::pow(10, decades.last), axis_width);

  std::ofstream svg(file);
  bench::begin_svg(svg, labels_width + axis_width + right_margin, height);
  draw_head(svg, plot);
  for (int decade = decades.first; decade <= decades.last; ++decade) {
    const double value = std::pow(10, decade);
    bench::draw_tick(svg, labels_width + axis.placeOf(value), top, height - bottom, plot.tick_text(value));
  }
  double y = top;
  for (const PlotGroup &group : plot.groups) {
    svg << "<text class='head' x='16' y='" << y + group_head - 8 << "'>" << group.title << "</text>\n";
    y += group_head;
    for (const PlotRow &row : group.rows) {
      draw_row(svg, row, axis, y);
      y += row_height;
    }
  }
  svg << "</svg>\n";
  return svg.flush().good();
}

std::string row_title(const Comparison &row) { return row.title + " / " + row.yardstick; }

/// What the goal says of the ratio of ours to theirs.
std::optional<double> ratio_goal(const Goal &goal) {
  if (goal.kind == Goal::Kind::at_most_times)
    return goal.limit;
  if (goal.kind == Goal::Kind::times_as_fast)
    return 1 / goal.limit;
  return {};
}

/// The groups with those rows that `row_of` makes something of.
template <class RowOf> std::vector<PlotGroup> groups_of(const std::vector<Group> &groups, RowOf row_of) {
  std::vector<PlotGroup> all;
  for (const Group &group : groups) {
    PlotGroup shown{group.title, {}};
    for (const Comparison &row : group.rows)
      if (std::optional<PlotRow> plot_row = row_of(row))
        shown.rows.push_back(*plot_row);
    if (!shown.rows.empty())
      all.push_back(shown);
  }
  return all;
}

std::optional<PlotRow> times_of(const Comparison &row) {
  if (row.unit == Unit::bytes)
    return {};
  return PlotRow{row_title(row), {spread_of(row.ours), spread_of(row.theirs)}, {}};
}

std::optional<PlotRow> ratios_of(const Comparison &row) {
  Comparison ratio = row;
  ratio.goal = {};
  return PlotRow{row_title(row), {spread_of(outcomes_of(ratio))}, ratio_goal(row.goal)};
}

} // namespace

bool write_plots(const std::string &beginning, const std::vector<Group> &groups) {
  const Plot times{{"ours", "theirs"}, groups_of(groups, times_of), time_text, false};
  const Plot ratios{{"ours as a multiple of theirs"}, groups_of(groups, ratios_of), ratio_text, true};
  const bool are_times_written = write_plot(beginning + "-times.svg", times);
  return write_plot(beginning + "-ratios.svg", ratios) && are_times_written;
}

} // namespace buttondriver::yardsticks
