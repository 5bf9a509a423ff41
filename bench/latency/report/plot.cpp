// SPDX-License-Identifier: Apache-2.0
#include "latency/report/plot.h"

#include "latency/report/runs.h"

#include <array>
#include <cmath>
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

constexpr const char *style = R"(<style>
svg { font: 12px sans-serif; }
.paper { fill: #ffffff; } text { fill: #24292f; } .faint { fill: #57606a; } .head { font-weight: bold; }
.grid { stroke: #d8dee4; } .goal { stroke: #1a7f37; stroke-width: 2; }
.d0 { stroke: #bc4c00; fill: #bc4c00; } .d1 { stroke: #0969da; fill: #0969da; } .d2 { stroke: #8250df; fill: #8250df; }
.range { stroke-width: 2; } text.d0, text.d1, text.d2 { stroke: none; }
@media (prefers-color-scheme: dark) {
.paper { fill: #0d1117; } text { fill: #e6edf3; } .faint { fill: #9198a1; }
.grid { stroke: #30363d; } .goal { stroke: #3fb950; }
.d0 { stroke: #f0883e; fill: #f0883e; } .d1 { stroke: #58a6ff; fill: #58a6ff; } .d2 { stroke: #bc8cff; fill: #bc8cff; }
}
</style>
)";

constexpr std::size_t colours = 3;

/// Where on the axis a time lies, 0 to column_width.
double place_of(double seconds) {
  const double within = std::min(std::max(seconds, shortest), longest);
  return column_width * std::log(within / shortest) / std::log(longest / shortest);
}

void draw_axis(std::ostream &svg, double left, double height) {
  for (const double tick : ticks) {
    const double x = left + place_of(tick);
    svg << "<path class='grid' d='M" << x << ' ' << top << 'V' << height - bottom << "'/><text class='faint' x='" << x
        << "' y='" << top - 6 << "' text-anchor='middle'>"
        << (tick < 1
                ? std::to_string(tick * 1000).substr(0, tick < 1e-3 ? 3 : std::to_string(tick * 1000).find('.')) + " ms"
                : std::to_string(static_cast<int>(tick)) + " s")
        << "</text>\n";
  }
}

void draw_values(std::ostream &svg, const Values &values, double left, double y, std::size_t colour) {
  if (values.values.empty()) {
    svg << "<text class='d" << colour % colours << "' x='" << left + column_width << "' y='" << y + 4
        << "' text-anchor='end'>none</text>\n";
    return;
  }
  const double median = left + place_of(values.median());
  const double worst = left + (values.missing > 0 ? column_width : place_of(values.worst(Unit::seconds)));
  svg << "<g class='d" << colour % colours << "'><path class='range' d='M" << median << ' ' << y << 'H' << worst
      << "m0 -3v6'/><circle cx='" << median << "' cy='" << y << "' r='3.2'/></g>\n";
}

void draw_row(std::ostream &svg, const Row &row, const std::vector<const MeasuredRun *> &columns, double left, double y,
              double height) {
  const double goal = left + place_of(row.worst_goal);
  svg << "<path class='goal' d='M" << goal << ' ' << y << 'v' << height << "'/>\n";
  for (std::size_t i = 0; i < columns.size(); ++i)
    draw_values(svg, (*columns[i])[row.id], left, y + daemon_height * (static_cast<double>(i) + 0.5), i);
}

void draw_head(std::ostream &svg, const std::vector<std::string> &daemons) {
  double x = 16;
  const auto entry = [&](const std::string &mark, const std::string &text, const std::string &text_class) {
    svg << mark << "<text class='" << text_class << "' x='" << x + 30 << "' y='24'>" << text << "</text>\n";
    x += 50 + 7 * static_cast<double>(text.size());
  };
  const auto at = [&](double offset) { return std::to_string(x + offset); };
  for (std::size_t i = 0; i < daemons.size(); ++i) {
    const std::string colour = "d" + std::to_string(i % colours);
    entry("<g class='" + colour + "'><path class='range' d='M" + at(0) + " 20h22m0 -3v6'/><circle cx='" + at(0) +
              "' cy='20' r='3.2'/></g>",
          (daemons[i].empty() ? "" : daemons[i] + ": ") + "median to worst", colour);
  }
  entry("<path class='goal' d='M" + at(20) + " 14v12'/>", "goal for the worst", "faint");
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
  svg << "<svg xmlns='http://www.w3.org/2000/svg' width='" << width << "' height='" << height << "' viewBox='0 0 "
      << width << ' ' << height << "'>\n"
      << style << "<rect class='paper' width='100%' height='100%'/>\n";
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
