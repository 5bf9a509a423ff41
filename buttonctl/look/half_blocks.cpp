// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/look/half_blocks.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>

namespace buttondriver::buttonctl {

namespace {

const QString upper_half = QStringLiteral("\u2580");
const QString own_colours = QStringLiteral("\x1b[0m");
constexpr int first_of_cube = 16;
constexpr int side_of_cube = 6;
constexpr std::array<int, side_of_cube> steps_of_cube{0, 95, 135, 175, 215, 255};
constexpr int first_grey = 232;
constexpr int greys = 24;
constexpr int darkest_grey = 8;
constexpr int step_of_greys = 10;

int nearest_step(int value) {
  const auto nearer = [value](int one, int other) { return std::abs(one - value) < std::abs(other - value); };
  return static_cast<int>(std::min_element(steps_of_cube.begin(), steps_of_cube.end(), nearer) - steps_of_cube.begin());
}

int distance(Colour colour, int red, int green, int blue) {
  const auto square = [](int value) { return value * value; };
  return square(colour.red - red) + square(colour.green - green) + square(colour.blue - blue);
}

/// What selects `colour`; `layer` is 38 for characters and 48 for what is behind them.
QString selection(int layer, Colour colour, Colours colours) {
  if (colours == Colours::few)
    return QStringLiteral("\x1b[%1;5;%2m").arg(layer).arg(nearest_of_256(colour));
  return QStringLiteral("\x1b[%1;2;%2;%3;%4m").arg(layer).arg(colour.red).arg(colour.green).arg(colour.blue);
}

/// Writes one line, and no colour twice.
class LineWriter {
public:
  explicit LineWriter(Colours colours) : _colours(colours) {}

  void add(Colour upper, Colour lower) {
    if (_upper != upper)
      _line += selection(38, upper, _colours);
    if (_lower != lower)
      _line += selection(48, lower, _colours);
    _upper = upper;
    _lower = lower;
    _line += upper_half;
  }

  void addGap() {
    if (_upper)
      _line += own_colours;
    _upper.reset();
    _lower.reset();
    _line += QLatin1Char(' ');
  }

  QString end() const { return _upper ? _line + own_colours : _line; }

private:
  const Colours _colours;
  QString _line;
  std::optional<Colour> _upper;
  std::optional<Colour> _lower;
};

} // namespace

int nearest_of_256(Colour colour) {
  const int red = nearest_step(colour.red);
  const int green = nearest_step(colour.green);
  const int blue = nearest_step(colour.blue);
  const auto step = [](int number) { return steps_of_cube[static_cast<std::size_t>(number)]; };
  const int in_cube = distance(colour, step(red), step(green), step(blue));

  const int mean = (colour.red + colour.green + colour.blue) / 3;
  const int grey = std::clamp((mean - darkest_grey + step_of_greys / 2) / step_of_greys, 0, greys - 1);
  const int level = darkest_grey + step_of_greys * grey;
  if (distance(colour, level, level, level) < in_cube)
    return first_grey + grey;
  return first_of_cube + (red * side_of_cube + green) * side_of_cube + blue;
}

QStringList half_blocks(const std::vector<Picture> &pictures, Colours colours) {
  QStringList lines;
  const int height = pictures.empty() ? 0 : pictures.front().height();
  for (int y = 0; y < height; y += 2) {
    LineWriter line(colours);
    for (std::size_t i = 0; i < pictures.size(); ++i) {
      const Picture &picture = pictures[i];
      if (i > 0)
        line.addGap();
      for (int x = 0; x < picture.width(); ++x)
        line.add(picture.at(x, y), picture.contains(x, y + 1) ? picture.at(x, y + 1) : Colour());
    }
    lines += line.end();
  }
  return lines;
}

} // namespace buttondriver::buttonctl
