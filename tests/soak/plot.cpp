// SPDX-License-Identifier: Apache-2.0
#include "soak/sample.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
namespace buttondriver::soak {

namespace {

constexpr double picture_width = 960;
constexpr double left = 80;
constexpr double curve_width = 850;
constexpr double panel_height = 150;
constexpr double panel_pitch = 200;
constexpr double top = 40;

struct Curve {
  const char *name;
  const char *colour;
  std::function<double(const Sample &)> value;
};

struct Panel {
  const char *title;
  std::vector<Curve> curves;
};

const std::vector<Panel> &panels() {
  static const std::vector<Panel> all = {
      {"resident memory, MiB",
       {{"memory", "#1f6fb4", [](const Sample &s) { return static_cast<double>(s.memory_kib) / 1024; }}}},
      {"open descriptors", {{"descriptors", "#7a4fa3", [](const Sample &s) { return double(s.descriptors); }}}},
      {"answer to a ping, ms",
       {{"slowest of the second", "#d9822b", [](const Sample &s) { return s.slowest_ms; }},
        {"median of the second", "#2e8b57", [](const Sample &s) { return s.median_ms; }}}},
      {"waiting in the kernel, KiB",
       {{"not yet read by the daemon", "#b03a48", [](const Sample &s) { return double(s.unread_kib); }},
        {"answers not taken by clients", "#555555", [](const Sample &s) { return double(s.unsent_kib); }}}},
  };
  return all;
}

/// The next number of the form 1, 2 or 5 times a power of ten.
double round_up(double value) {
  if (value <= 1)
    return 1;
  const double power = std::pow(10, std::floor(std::log10(value)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (value <= factor * power)
      return factor * power;
  return 10 * power;
}

void draw_panel(std::ostream &svg, const Panel &panel, double y, const std::vector<Sample> &samples, double seconds) {
  double highest = 0;
  for (const Curve &curve : panel.curves)
    for (const Sample &sample : samples)
      highest = std::max(highest, curve.value(sample));
  highest = round_up(highest);
  svg << "<text x='" << left << "' y='" << y - 8 << "' font-weight='bold'>" << panel.title << "</text>\n";
  constexpr int lines = 4;
  for (int i = 0; i <= lines; ++i) {
    const double line = y + panel_height * i / lines;
    svg << "<path d='M" << left << ' ' << line << "h" << curve_width << "' stroke='#ddd'/><text x='" << left - 6
        << "' y='" << line + 4 << "' text-anchor='end'>" << highest * (lines - i) / lines << "</text>\n";
  }
  double name_x = left + curve_width;
  for (const Curve &curve : panel.curves) {
    svg << "<polyline fill='none' stroke-width='1.5' stroke='" << curve.colour << "' points='";
    for (const Sample &sample : samples)
      svg << left + curve_width * sample.seconds / seconds << ','
          << y + panel_height * (1 - curve.value(sample) / highest) << ' ';
    svg << "'/>\n<text x='" << name_x << "' y='" << y - 8 << "' text-anchor='end' fill='" << curve.colour << "'>"
        << curve.name << "</text>\n";
    name_x -= 220;
  }
}

} // namespace

bool write_plot(const std::string &file, const std::vector<Sample> &samples) {
  const double seconds = samples.empty() ? 1 : std::max(samples.back().seconds, 1.0);
  const double height = top + panel_pitch * static_cast<double>(panels().size());
  std::ofstream svg(file);
  svg << "<svg xmlns='http://www.w3.org/2000/svg' width='" << picture_width << "' height='" << height
      << "' font-family='sans-serif' font-size='12'>\n<rect width='100%' height='100%' fill='white'/>\n";
  double y = top;
  for (const Panel &panel : panels()) {
    draw_panel(svg, panel, y, samples, seconds);
    y += panel_pitch;
  }
  svg << "<text x='" << left << "' y='" << height - 26 << "'>0 s</text><text x='" << left + curve_width << "' y='"
      << height - 26 << "' text-anchor='end'>" << std::lround(seconds) << " s</text>\n</svg>\n";
  return svg.flush().good();
}

} // namespace buttondriver::soak
