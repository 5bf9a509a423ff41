// SPDX-License-Identifier: Apache-2.0
#include "latency/report/plot.h"

#include "latency/report/runs.h"
#include "support/svg.h"

#include <array>
#include <fstream>

namespace buttondriver::latency {

namespace {

constexpr double labels_width = 340;
constexpr double column_width = 400;
constexpr double column_gap = 40;
constexpr double top = 70;
constexpr double daemon_height = 9;
constexpr double row_gap = 7;
constexpr double load_head = 26;
constexpr double bottom = 20;

// What the axis shows: from 50 microseconds to a little more than a minute.
constexpr double shortest = 5e-5;
constexpr double longest = 70;
constexpr std::array<double, 7> ticks = {1e-4, 1e-3, 1e-2, 1e-1, 1, 10, 60};

const bench::LogarithmicAxis axis(shortest, longest, column_width);

void draw_axis(std::ostream &svg, double left, double height) {
  for (const double tick : ticks)
    bench::draw_tick(
        svg, left + axis.placeOf(tick), top, height - bottom,
        tick < 1
            ? std::to_string(tick * 1000).substr(0, tick < 1e-3 ? 3 : std::to_string(tick * 1000).find('.')) + " ms"
            : std::to_string(static_cast<int>(tick)) + " s");
}

void draw_values(std::ostream &svg, const Values &values, double left, double y, std::size_t colour) {
  if (values.values.empty()) {
    svg << "<text class='" << bench::colour_class(colour) << "' x='" << left + column_width << "' y='" << y + 4
        << "' text-anchor='end'>none</text>\n";
    return;
  }
  const double worst = values.missing > 0 ? column_width : axis.placeOf(values.worst(Unit::seconds));
  bench::draw_mark(svg, colour, left + axis.placeOf(values.median()), {left + worst}, y);
}

void draw_row(std::ostream &svg, const Row &row, const std::vector<const MeasuredRun *> &columns, double left, double y,
              double height) {
  bench::draw_goal(svg, left + axis.placeOf(row.worst_goal), y, height);
  for (std::size_t i = 0; i < columns.size(); ++i)
    draw_values(svg, (*columns[i])[row.id], left, y + daemon_height * (static_cast<double>(i) + 0.5), i);
}

void draw_head(std::ostream &svg, const std::vector<std::string> &daemons) {
  double x = 16;
  for (std::size_t i = 0; i < daemons.size(); ++i) {
    bench::draw_mark(svg, i, x, {x + 22}, 20);
    const std::string title = (daemons[i].empty() ? "" : daemons[i] + ": ") + "median to worst";
    x = bench::draw_entry(svg, x, 24, title, bench::colour_class(i));
  }
  bench::draw_goal(svg, x + 20, 14, 12);
  bench::draw_entry(svg, x, 24, "goal for the worst", "faint");
}

} // namespace

bool write_plot(const std::string &file, const std::vector<MeasuredRun> &runs) {
  const std::vector<double> devices = devices_of(runs);
  const std::vector<std::string> loads = loads_of(runs);
  const std::vector<std::string> daemons = daemons_of(runs);
  std::vector<Row> rows;
  for (const Row &row : all_rows())
    if (row.unit == Unit::seconds)
      rows.push_back(row);
  const double row_height = daemon_height * static_cast<double>(daemons.size());
  const double load_height = load_head + static_cast<double>(rows.size()) * (row_height + row_gap);
  const double height = top + load_height * static_cast<double>(loads.size()) + bottom;
  const double width = labels_width + (column_width + column_gap) * static_cast<double>(devices.size());

  std::ofstream svg(file);
  bench::begin_svg(svg, width, height);
  draw_head(svg, daemons);
  for (std::size_t column = 0; column < devices.size(); ++column) {
    const double left = labels_width + (column_width + column_gap) * static_cast<double>(column);
    svg << "<text class='head' x='" << left << "' y='" << top - 26 << "'>" << device_title(devices[column])
        << "</text>\n";
    draw_axis(svg, left, height);
    double y = top;
    for (const std::string &load : loads) {
      if (column == 0)
        svg << "<text class='head' x='16' y='" << y + load_head - 8 << "'>" << load << "</text>\n";
      y += load_head;
      for (const Row &row : rows) {
        if (column == 0)
          svg << "<text x='16' y='" << y + row_height / 2 + 4 << "'>" << row.title << "</text>\n";
        draw_row(svg, row, runs_of(runs, devices[column], load), left, y, row_height);
        y += row_height + row_gap;
      }
    }
  }
  svg << "</svg>\n";
  return svg.flush().good();
}

} // namespace buttondriver::latency
