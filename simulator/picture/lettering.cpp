// SPDX-License-Identifier: Apache-2.0
#include "simulator/picture/lettering.h"

#include <QPainterPath>

#include <algorithm>
#include <iterator>

namespace buttondriver::simulator {

namespace {

constexpr double grid_height = 12;

constexpr Glyph glyphs[] = {
    {'0', 8, "M04Q0040Q8084L88Q8c4cQ0c08L04"},
    {'1', 8, "M23L50L5c"},
    {'2', 8, "M03Q0040Q8083Q8557L0cL8c"},
    {'3', 8, "M02Q1040Q7073Q7646Q8689Q8c4cQ0c0a"},
    {'4', 8, "M50L09L89M66L6c"},
    {'5', 8, "M70L10L06Q1444Q8488Q8c4cQ0c0a"},
    {'6', 8, "M50Q0408Q0c4cQ8c88Q8444Q0408"},
    {'7', 8, "M00L80L3c"},
    {'8', 8, "M46Q1613Q1040Q7073Q7646Q8689Q8c4cQ0c09Q0646"},
    {'9', 8, "M3cQ8884Q8040Q0004Q0848Q8884"},
    {'A', 8, "M0cL40L8cM19L79"},
    {'B', 8, "M46L06L00L40Q7073Q7646Q8689Q8c4cL0cL06"},
    {'C', 8, "M83Q8040Q0004L08Q0c4cQ8c89"},
    {'D', 8, "M00L0cL3cQ8c88L84Q8030L00"},
    {'E', 7, "M70L00L0cL7cM06L66"},
    {'G', 8, "M83Q8040Q0004L08Q0c4cQ8c88L86L56"},
    {'I', 0, "M00L0c"},
    {'L', 6, "M00L0cL6c"},
    {'N', 8, "M0cL00L8cL80"},
    {'O', 8, "M04Q0040Q8084L88Q8c4cQ0c08L04"},
    {'P', 8, "M0cL00L40Q8083Q8646L06"},
    {'R', 8, "M0cL00L40Q8083Q8646L06M46L8c"},
    {'S', 8, "M82Q7040Q0003Q0646Q8689Q8c4cQ1c0a"},
    {'T', 8, "M00L80M40L4c"},
    {'U', 8, "M00L08Q0c4cQ8c88L80"},
    {'V', 8, "M00L4cL80"},
    {'Y', 8, "M00L46L80M46L4c"},
};
constexpr Glyph blank = {' ', 3, ""};

const Glyph &glyph_of(char character) {
  const auto *found = std::find_if(std::begin(glyphs), std::end(glyphs),
                                   [character](const Glyph &glyph) { return glyph.character == character; });
  return found == std::end(glyphs) ? blank : *found;
}

double coordinate(char digit) { return digit <= '9' ? digit - '0' : digit - 'a' + 10; }

void add_strokes(QPainterPath &path, std::string_view strokes, const QPointF &top_left, double scale) {
  const auto point = [&](std::size_t at) {
    return top_left + QPointF(coordinate(strokes[at]), coordinate(strokes[at + 1])) * scale;
  };
  for (std::size_t at = 0; at < strokes.size();) {
    switch (strokes[at]) {
    case 'M':
      path.moveTo(point(at + 1));
      at += 3;
      break;
    case 'L':
      path.lineTo(point(at + 1));
      at += 3;
      break;
    default:
      path.quadTo(point(at + 1), point(at + 3));
      at += 5;
    }
  }
}

} // namespace

const std::vector<Glyph> &lettering_glyphs() {
  static const std::vector<Glyph> all(std::begin(glyphs), std::end(glyphs));
  return all;
}

double lettering_width(std::string_view text, const Lettering &lettering) {
  double width = 0;
  for (const char character : text)
    width += glyph_of(character).width * lettering.height / grid_height + lettering.spacing * lettering.height;
  return text.empty() ? 0 : width - lettering.spacing * lettering.height;
}

void draw_lettering(QPainter &painter, const QPointF &middle_left, std::string_view text, const Lettering &lettering) {
  const double scale = lettering.height / grid_height;
  QPointF at = middle_left - QPointF(0, lettering.height / 2);
  QPainterPath path;
  for (const char character : text) {
    const Glyph &glyph = glyph_of(character);
    add_strokes(path, glyph.strokes, at, scale);
    at.rx() += glyph.width * scale + lettering.spacing * lettering.height;
  }
  painter.strokePath(path,
                     QPen(QColor(lettering.colour), lettering.stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void draw_centred_lettering(QPainter &painter, const QPointF &centre, std::string_view text,
                            const Lettering &lettering) {
  draw_lettering(painter, centre - QPointF(lettering_width(text, lettering) / 2, 0), text, lettering);
}

} // namespace buttondriver::simulator
