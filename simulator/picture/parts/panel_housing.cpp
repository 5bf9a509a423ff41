// SPDX-License-Identifier: Apache-2.0
#include "simulator/picture/parts/panel_housing.h"

#include "simulator/picture/lettering.h"
#include "simulator/picture/panel_layout.h"
#include "simulator/picture/parts/lamp.h"
#include "simulator/picture/parts/panel_key.h"
#include "simulator/picture/parts/panel_plate.h"
#include "simulator/picture/parts/shading.h"

#include <QPainter>

#include <string>

namespace buttondriver::simulator {

namespace {

constexpr Lettering wordmark = {19, 2.6, 0.42, 0xFFDDE1E5};
constexpr Lettering wordmark_second = {19, 1.3, 0.42, 0xFF8E949B};
constexpr Lettering legend = {9, 1.35, 0.5, 0xFF9AA0A7};
constexpr Lettering small_number = {7.5, 1.1, 0.4, 0xFF7E848B};
constexpr Lettering group_number = {7.5, 1.3, 0.4, 0xFFD0D5DA};

/// An opening in the plate: shadow inside its upper edge, light on its lower one.
void draw_opening(QPainter &painter, const QRectF &opening, double radius) {
  painter.fillPath(rounded(opening.adjusted(-1, 0, 1, 2), radius + 1), QColor(255, 255, 255, 30));
  painter.fillPath(rounded(opening.adjusted(-1, -2, 1, 0), radius + 1), QColor(0, 0, 0, 110));
  painter.fillPath(rounded(opening, radius), QColor(5, 6, 6));
  const QRectF glass = opening.adjusted(1, 2, -1, -1);
  painter.fillPath(rounded(glass, radius - 1), downwards(glass, QColor(17, 18, 20), QColor(25, 27, 29)));
}

void draw_bezel(QPainter &painter, std::size_t id) {
  const QRectF bezel = layout::bezel(id);
  draw_opening(painter, bezel, 18);
  const QRectF glass = bezel.adjusted(3, 4, -3, -3);
  painter.fillPath(rounded(glass, 15), downwards(glass, QColor(22, 24, 26), QColor(11, 12, 13)));
  QPainterPath gleam;
  gleam.addPolygon(QPolygonF({glass.topLeft(), glass.topLeft() + QPointF(glass.width() * 0.62, 0),
                              glass.topLeft() + QPointF(glass.width() * 0.3, glass.height()), glass.bottomLeft()}));
  gleam.closeSubpath();
  painter.fillPath(rounded(glass, 15).intersected(gleam),
                   downwards(glass, QColor(255, 255, 255, 20), QColor(255, 255, 255, 4)));
  const QRectF screen = layout::screen(id);
  painter.fillPath(rounded(screen.adjusted(-7, -7, 7, 7), 5), QColor(255, 255, 255, 16));
  painter.fillPath(rounded(screen.adjusted(-6, -6, 6, 6), 4), QColor(3, 3, 4));
  painter.fillRect(layout::screen(id), Qt::black);
  draw_centred_lettering(painter, QPointF(bezel.center().x(), bezel.bottom() - 17), "SCREEN " + std::to_string(id),
                         {8, 1.2, 0.55, 0xFF6A7077});
}

void draw_header(QPainter &painter) {
  const double middle = QRectF(layout::intensity_window).center().y();
  const double left = layout::bezel(0).left() + 28;
  draw_lettering(painter, QPointF(left, middle), "BUTTONDRIVER", wordmark);
  const double second = left + lettering_width("BUTTONDRIVER", wordmark) + 22;
  draw_lettering(painter, QPointF(second, middle), "VIRTUAL PANEL", wordmark_second);
}

void draw_toggles(QPainter &painter) {
  for (std::size_t id = 0; id < dimensions::toggle_indicator_count; ++id) {
    const QRectF lamp = layout::toggle(id);
    const QRectF ring = lamp.adjusted(-5, -5, 5, 5);
    painter.fillPath(rounded(ring.adjusted(-1, -1, 1, 1), ring.width() / 2 + 1), QColor(12, 13, 14));
    painter.fillPath(rounded(ring, ring.width() / 2), downwards(ring, QColor(150, 155, 162), QColor(44, 46, 50)));
    const QRectF seat = lamp.adjusted(-2.5, -2.5, 2.5, 2.5);
    painter.fillPath(rounded(seat, seat.width() / 2), downwards(seat, QColor(20, 21, 23), QColor(70, 74, 79)));
    draw_dark_lamp(painter, layout::toggle(id), toggle_lamp);
    draw_centred_lettering(painter, QPointF(lamp.left() - 17, lamp.center().y()), std::to_string(id), legend);
  }
  const double right = layout::toggle(0).left() - 42;
  draw_lettering(painter, QPointF(right - lettering_width("TOGGLE", legend), QRectF(layout::toggle(0)).center().y()),
                 "TOGGLE", legend);
}

void draw_intensity_window(QPainter &painter) {
  const QRectF window = layout::intensity_window;
  draw_opening(painter, window, 8);
  for (int level = 1; level <= dimensions::highest_intensity_level; ++level)
    painter.fillRect(layout::intensity_segment(level), QColor(44, 46, 49));
  draw_lettering(painter, QPointF(window.left() - 12 - lettering_width("INTENSITY", legend), window.center().y()),
                 "INTENSITY", legend);
}

void draw_status_tray(QPainter &painter) {
  const QRectF tray = layout::status_tray;
  draw_opening(painter, tray, 12);
  draw_lettering(painter, QPointF(tray.left() + 28, layout::status_led(0).center().y() + 0.5), "STATUS", legend);
  for (std::size_t id = 0; id < dimensions::led_count; ++id) {
    const QRectF lamp = layout::status_led(id);
    draw_dark_lamp(painter, layout::status_led(id), status_lamp);
    draw_centred_lettering(painter, QPointF(lamp.center().x(), lamp.bottom() + 20), std::to_string(id),
                           id % 4 == 0 ? group_number : small_number);
  }
}

void draw_keys(QPainter &painter) {
  for (std::size_t id = 0; id < dimensions::button_count; ++id)
    draw_dark_key(painter, id);
}

/// The button lamps that have no key, between two fine lines.
void draw_keyless_lamps(QPainter &painter) {
  for (std::size_t id = dimensions::button_count; id < dimensions::led_count; ++id) {
    const QRectF lamp = layout::button_led(id);
    draw_dark_lamp(painter, layout::button_led(id), button_lamp);
    draw_centred_lettering(painter, QPointF(lamp.center().x(), lamp.bottom() + 15), std::to_string(id),
                           {6, 1, 0.4, 0xFF868C93});
  }
  const double middle = QRectF(layout::button_led(dimensions::button_count)).center().y();
  const double left = layout::bezel(0).left() + 28;
  const double right = layout::button_light(dimensions::button_count).left() - 18;
  for (const double start : {left, layout::picture_width - right}) {
    painter.fillRect(QRectF(start, middle - 1, right - left, 1), QColor(0, 0, 0, 120));
    painter.fillRect(QRectF(start, middle, right - left, 1), QColor(255, 255, 255, 22));
  }
}

} // namespace

QImage draw_housing() {
  QImage image = draw_plate();
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  draw_header(painter);
  draw_toggles(painter);
  draw_intensity_window(painter);
  for (std::size_t id = 0; id < dimensions::screen_count; ++id)
    draw_bezel(painter, id);
  draw_status_tray(painter);
  draw_keys(painter);
  draw_keyless_lamps(painter);
  return image;
}

} // namespace buttondriver::simulator
