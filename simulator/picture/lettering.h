// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QPainter>
#include <QPointF>

#include <string_view>
#include <vector>

namespace buttondriver::simulator {

/// How a legend on the panel is printed.
struct Lettering {
  /// Height of the capitals in pixels.
  double height;
  /// Width of the strokes in pixels.
  double stroke;
  /// Gap between two characters, as a part of the height.
  double spacing;
  QRgb colour;
};

/// One character as pen strokes on a grid 12 high with y downwards, every coordinate one hexadecimal digit: Mxy lifts
/// the pen to a point, Lxy draws a line, Qxyxy a quadratic curve (its control point, then its end).
struct Glyph {
  char character;
  int width;
  std::string_view strokes;
};

/// All characters there are but the blank.
const std::vector<Glyph> &lettering_glyphs();

/// Width of `text` in pixels, from the left edge of the first character to the right edge of the last.
double lettering_width(std::string_view text, const Lettering &lettering);

/// Prints `text` with strokes of our own, so that a picture needs no font: digits, the capitals that the panel uses,
/// and blanks; anything else comes out as a blank. `middle_left` is half way up the first character.
void draw_lettering(QPainter &painter, const QPointF &middle_left, std::string_view text, const Lettering &lettering);

/// The same with the middle of the text at `centre`.
void draw_centred_lettering(QPainter &painter, const QPointF &centre, std::string_view text,
                            const Lettering &lettering);

} // namespace buttondriver::simulator
