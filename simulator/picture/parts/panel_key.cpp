// SPDX-License-Identifier: Apache-2.0
#include "simulator/picture/parts/panel_key.h"

#include "simulator/picture/lettering.h"
#include "simulator/picture/panel_layout.h"
#include "simulator/picture/parts/lamp.h"
#include "simulator/picture/parts/shading.h"

#include <string>

namespace buttondriver::simulator {

namespace {

constexpr double cap_radius = 11;
constexpr QRgb dark_number = 0xFFC4C9CF;
constexpr QRgb lit_number = 0xFFFFEBC8;

void draw_number(QPainter &painter, std::size_t id, QRgb colour) {
  const QRect lamp = layout::button_led(id);
  draw_centred_lettering(painter, QRectF(lamp).center() + QPointF(0, 31), std::to_string(id), {19, 2.2, 0.3, colour});
}

} // namespace

void draw_dark_key(QPainter &painter, std::size_t id) {
  const QRectF cap = layout::key(id);
  const QRectF gap = cap.adjusted(-4, -4, 4, 4);
  painter.fillPath(rounded(gap.translated(0, 1), cap_radius + 4), QColor(255, 255, 255, 26));
  painter.fillPath(rounded(gap, cap_radius + 4), downwards(gap, QColor(8, 9, 10), QColor(17, 18, 20)));

  painter.fillPath(rounded(cap, cap_radius), downwards(cap, QColor(104, 109, 116), QColor(26, 28, 31)));
  const QRectF side = cap.adjusted(1, 1, -1, -1);
  painter.fillPath(rounded(side, cap_radius - 1), downwards(side, QColor(76, 80, 86), QColor(36, 38, 42)));
  const QRectF dish = cap.adjusted(6, 5, -6, -8);
  painter.fillPath(rounded(dish, cap_radius - 4), downwards(dish, QColor(47, 50, 54), QColor(66, 70, 75)));
  const QRectF floor = dish.adjusted(1, 1, -1, -1);
  painter.fillPath(rounded(floor, cap_radius - 5), downwards(floor, QColor(53, 56, 61), QColor(62, 65, 70)));

  draw_dark_lamp(painter, layout::button_led(id), button_lamp);
  draw_number(painter, id, dark_number);
}

void draw_key_light(QPainter &painter, std::size_t id) {
  const QRectF cap = layout::key(id);
  const QRect lamp = layout::button_led(id);
  const QPainterPath gap = rounded(cap.adjusted(-4, -4, 4, 4), cap_radius + 4).subtracted(rounded(cap, cap_radius));
  painter.fillPath(gap, downwards(cap, QColor(255, 166, 58, 150), QColor(255, 166, 58, 45)));
  draw_glow(painter, lamp, rounded(cap, cap_radius), 100, 205, button_lamp);
  draw_lit_lamp(painter, lamp, button_lamp);
  draw_number(painter, id, lit_number);
}

} // namespace buttondriver::simulator
