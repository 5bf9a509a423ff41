// SPDX-License-Identifier: Apache-2.0
#include "simulator/picture/parts/lamp.h"

#include "simulator/picture/parts/shading.h"

#include <QRadialGradient>

#include <algorithm>
#include <utility>

namespace buttondriver::simulator {

namespace {

QPainterPath outline(const QRectF &lamp) { return rounded(lamp, std::min(lamp.width(), lamp.height()) / 2); }

QColor with_opacity(QRgb colour, int opacity) {
  QColor result(colour);
  result.setAlpha(opacity);
  return result;
}

} // namespace

void draw_dark_lamp(QPainter &painter, const QRect &lamp, const LampColours &colours) {
  const QRectF area(lamp);
  painter.fillPath(outline(area.adjusted(-2, -2, 2, 2)), QColor(8, 9, 10, 200));
  painter.fillPath(outline(area.adjusted(-1, 0, 1, 2.5)), QColor(255, 255, 255, 22));
  painter.fillPath(outline(area.adjusted(-1, -1, 1, 1)), QColor(6, 7, 8));
  painter.fillPath(outline(area), downwards(area, QColor(colours.dark).darker(130), QColor(colours.dark).lighter(135)));
  const double shine = std::min(area.width(), area.height()) / 4;
  painter.fillPath(
      outline(QRectF(area.left() + shine, area.top() + shine * 0.6, area.width() - 2 * shine, shine * 1.2)),
      QColor(255, 255, 255, 34));
}

void draw_lit_lamp(QPainter &painter, const QRect &lamp, const LampColours &colours) {
  const QRectF area(lamp);
  const double radius = std::min(area.width(), area.height()) / 2;
  painter.fillPath(outline(area.adjusted(-1, -1, 1, 1)), with_opacity(colours.edge, 140));
  if (lamp.width() == lamp.height()) {
    QRadialGradient lens(area.center(), radius, area.center() - QPointF(0, radius * 0.25));
    lens.setColorAt(0, QColor(colours.core));
    lens.setColorAt(0.35, QColor(colours.core));
    lens.setColorAt(0.75, QColor(colours.body));
    lens.setColorAt(1, QColor(colours.edge));
    painter.fillPath(outline(area), lens);
    return;
  }
  QLinearGradient lens = downwards(area, colours.body, colours.body);
  lens.setColorAt(0.4, QColor(colours.core));
  painter.fillPath(outline(area), lens);
}

void draw_glow(QPainter &painter, const QRect &lamp, const QPainterPath &area, double reach, int strength,
               const LampColours &colours) {
  QRadialGradient light(QRectF(lamp).center(), reach);
  // The square of what is left of the reach: a light that ends without a visible edge.
  for (const auto &[distance, part] : {std::pair(0.0, 1.0), std::pair(0.25, 0.5625), std::pair(0.5, 0.25),
                                       std::pair(0.75, 0.0625), std::pair(1.0, 0.0)})
    light.setColorAt(distance, with_opacity(colours.glow, static_cast<int>(strength * part)));
  painter.fillPath(area, light);
}

} // namespace buttondriver::simulator
