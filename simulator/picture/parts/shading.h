// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QLinearGradient>
#include <QPainterPath>
#include <QRectF>

/// The few shapes that every part of the picture is made of.
namespace buttondriver::simulator {

inline QPainterPath rounded(const QRectF &area, double radius) {
  QPainterPath path;
  path.addRoundedRect(area, radius, radius);
  return path;
}

inline QLinearGradient downwards(const QRectF &area, const QColor &top, const QColor &bottom) {
  QLinearGradient gradient(area.topLeft(), area.bottomLeft());
  gradient.setColorAt(0, top);
  gradient.setColorAt(1, bottom);
  return gradient;
}

} // namespace buttondriver::simulator
