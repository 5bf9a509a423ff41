// SPDX-License-Identifier: Apache-2.0
#include "simulator/picture/parts/panel_plate.h"

#include "simulator/picture/panel_layout.h"
#include "simulator/picture/parts/shading.h"
#include "simulator/picture/screen_image.h"

#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <cstdint>

namespace buttondriver::simulator {

namespace {

constexpr double plate_radius = 26;

/// The same scatter for the same place in every picture.
constexpr std::uint32_t scatter(std::uint32_t value) {
  value = (value ^ value >> 16) * 0x7FEB352DU;
  value = (value ^ value >> 15) * 0x846CA68BU;
  return value ^ value >> 16;
}

QRgb shifted(QRgb colour, int shift) {
  return qRgb(std::clamp(qRed(colour) + shift, 0, 255), std::clamp(qGreen(colour) + shift, 0, 255),
              std::clamp(qBlue(colour) + shift, 0, 255));
}

/// Gives an area the grain of metal brushed from side to side: every row is made of strokes that are a little lighter
/// or darker than the metal.
void brush(QImage &image, const QRect &area) {
  for (int y = area.top(); y <= area.bottom(); ++y) {
    auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
    std::uint32_t seed = scatter(static_cast<std::uint32_t>(y));
    for (int x = area.left(); x <= area.right();) {
      seed = scatter(seed + 1);
      const int end = std::min(area.right(), x + 24 + static_cast<int>(seed >> 8 & 0x7FU));
      const int shift = static_cast<int>(seed % 5U) - 2;
      for (; x <= end; ++x)
        line[x] = shifted(line[x], shift);
    }
  }
}

void draw_surroundings(QPainter &painter) {
  const QRectF whole(0, 0, layout::picture_width, layout::picture_height);
  QRadialGradient light(QPointF(whole.center().x(), 0), whole.width() * 0.75);
  light.setColorAt(0, QColor(58, 61, 66));
  light.setColorAt(1, QColor(17, 18, 20));
  painter.fillRect(whole, light);
  for (int reach = 18; reach > 0; --reach)
    painter.fillPath(
        rounded(QRectF(layout::plate).adjusted(-reach, -reach + 5, reach, reach + 5), plate_radius + reach),
        QColor(0, 0, 0, 9));
}

void draw_metal(QPainter &painter) {
  const QRectF plate = layout::plate;
  painter.fillPath(rounded(plate, plate_radius), downwards(plate, QColor(118, 123, 130), QColor(18, 19, 21)));
  const QRectF chamfer = plate.adjusted(1, 1, -1, -1);
  painter.fillPath(rounded(chamfer, plate_radius - 1), downwards(chamfer, QColor(82, 86, 92), QColor(30, 32, 35)));
  const QRectF face = plate.adjusted(4, 4, -4, -4);
  QLinearGradient metal(face.topLeft(), face.bottomRight());
  metal.setColorAt(0, QColor(60, 63, 68));
  metal.setColorAt(0.35, QColor(47, 50, 54));
  metal.setColorAt(0.6, QColor(52, 55, 59));
  metal.setColorAt(1, QColor(36, 38, 41));
  painter.fillPath(rounded(face, plate_radius - 4), metal);
}

/// A hexagon socket screw that sits flush in the plate.
void draw_screw(QPainter &painter, const QPointF &centre, double angle) {
  const QRectF head(centre.x() - 11, centre.y() - 11, 22, 22);
  painter.fillPath(rounded(head.adjusted(-2, -2, 2, 2).translated(0, 0.7), 13), QColor(255, 255, 255, 34));
  painter.fillPath(rounded(head.adjusted(-2, -2, 2, 2), 13), QColor(14, 15, 16));
  painter.fillPath(rounded(head, 11), downwards(head, QColor(122, 127, 134), QColor(44, 46, 50)));
  painter.fillPath(rounded(head.adjusted(1.5, 1.5, -1.5, -1.5), 9.5),
                   downwards(head, QColor(88, 92, 98), QColor(60, 63, 68)));
  painter.save();
  painter.translate(centre);
  painter.rotate(angle);
  const QPolygonF socket({QPointF(5.6, 0), QPointF(2.8, 4.85), QPointF(-2.8, 4.85), QPointF(-5.6, 0),
                          QPointF(-2.8, -4.85), QPointF(2.8, -4.85)});
  QPainterPath path;
  path.addPolygon(socket);
  path.closeSubpath();
  painter.fillPath(path, QColor(13, 14, 15));
  painter.restore();
}

void draw_screws(QPainter &painter) {
  const QRect plate = layout::plate;
  draw_screw(painter, plate.topLeft() + QPoint(25, 25), 11);
  draw_screw(painter, plate.topRight() + QPoint(-24, 25), 37);
  draw_screw(painter, plate.bottomLeft() + QPoint(25, -24), 52);
  draw_screw(painter, plate.bottomRight() + QPoint(-24, -24), 23);
}

} // namespace

QImage draw_plate() {
  QImage image(layout::picture_width, layout::picture_height, QImage::Format_RGB32);
  image.setDotsPerMeterX(dots_per_metre);
  image.setDotsPerMeterY(dots_per_metre);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  draw_surroundings(painter);
  draw_metal(painter);
  brush(image, layout::plate.adjusted(4, 4, -4, -4));
  draw_screws(painter);
  return image;
}

} // namespace buttondriver::simulator
