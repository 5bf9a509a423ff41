// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

/// Pieces of plots as SVG pictures, for light and dark pages. Coordinates are pixels; numbers stand for colours and may
/// be any: they repeat.
namespace buttondriver::bench {

/// The beginning of a picture, with its colours, lettering and paper. Whoever draws ends it with "</svg>".
void begin_svg(std::ostream &svg, double width, double height);

/// Of a mark or a text in a colour: the classes of the style.
std::string colour_class(std::size_t colour);

/// A vertical line of the grid from `top` to `bottom`, with its label above.
void draw_tick(std::ostream &svg, double x, double top, double bottom, const std::string &label);

/// A dot at `x`, and a line from there to each of the `ends`.
void draw_mark(std::ostream &svg, std::size_t colour, double x, const std::vector<double> &ends, double y);

/// A goal: a short vertical line.
void draw_goal(std::ostream &svg, double x, double y, double height);

/// A head line's entry: the mark that is drawn at `x` by whoever calls, with `text` right of it. Returns where the next
/// entry begins.
double draw_entry(std::ostream &svg, double x, double y, const std::string &text, const std::string &text_class);

/// Where values lie on an axis `width` long, those outside at its ends. `first` and `last` are above 0.
class LogarithmicAxis {
public:
  LogarithmicAxis(double first, double last, double width) : _first(first), _last(last), _width(width) {}
  double width() const { return _width; }
  double placeOf(double value) const;

private:
  double _first;
  double _last;
  double _width;
};

} // namespace buttondriver::bench
