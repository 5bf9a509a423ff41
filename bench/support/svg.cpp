// SPDX-License-Identifier: Apache-2.0
#include "support/svg.h"

#include <algorithm>
#include <cmath>

namespace buttondriver::bench {

namespace {

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

} // namespace

void begin_svg(std::ostream &svg, double width, double height) {
  svg << "<svg xmlns='http://www.w3.org/2000/svg' width='" << width << "' height='" << height << "' viewBox='0 0 "
      << width << ' ' << height << "'>\n"
      << style << "<rect class='paper' width='100%' height='100%'/>\n";
}

std::string colour_class(std::size_t colour) { return "d" + std::to_string(colour % colours); }

void draw_tick(std::ostream &svg, double x, double top, double bottom, const std::string &label) {
  svg << "<path class='grid' d='M" << x << ' ' << top << 'V' << bottom << "'/><text class='faint' x='" << x << "' y='"
      << top - 6 << "' text-anchor='middle'>" << label << "</text>\n";
}

void draw_mark(std::ostream &svg, std::size_t colour, double x, const std::vector<double> &ends, double y) {
  svg << "<g class='" << colour_class(colour) << "'>";
  for (const double end : ends)
    svg << "<path class='range' d='M" << x << ' ' << y << 'H' << end << "m0 -3v6'/>";
  svg << "<circle cx='" << x << "' cy='" << y << "' r='3.2'/></g>\n";
}

void draw_goal(std::ostream &svg, double x, double y, double height) {
  svg << "<path class='goal' d='M" << x << ' ' << y << 'v' << height << "'/>\n";
}

double draw_entry(std::ostream &svg, double x, double y, const std::string &text, const std::string &text_class) {
  svg << "<text class='" << text_class << "' x='" << x + 30 << "' y='" << y << "'>" << text << "</text>\n";
  return x + 50 + 7 * static_cast<double>(text.size());
}

double LogarithmicAxis::placeOf(double value) const {
  const double within = std::min(std::max(value, _first), _last);
  return _width * std::log(within / _first) / std::log(_last / _first);
}

} // namespace buttondriver::bench
