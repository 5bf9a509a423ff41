// SPDX-License-Identifier: Apache-2.0
#include "simulator/picture/panel_picture.h"

#include "simulator/picture/lettering.h"
#include "simulator/picture/panel_layout.h"
#include "simulator/picture/parts/lamp.h"
#include "simulator/picture/parts/panel_housing.h"
#include "simulator/picture/parts/panel_key.h"
#include "simulator/picture/screen_image.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QSaveFile>

#include <algorithm>
#include <string>

namespace buttondriver::simulator {

namespace {

constexpr Lettering intensity_number = {15, 1.8, 0.35, 0xFFF4EBDD};
constexpr QColor segment_colour(int level) { return QColor(178 + level, 168 + level, 146 + level); }

void draw_screen(QImage &picture, std::size_t id, const ScreenPixels &pixels, int intensity) {
  const QImage source = screen_image(pixels, intensity);
  const QRect place = layout::screen(id);
  for (int y = 0; y < place.height(); ++y) {
    const auto *from = reinterpret_cast<const QRgb *>(source.constScanLine(y / layout::screen_scale));
    auto *to = reinterpret_cast<QRgb *>(picture.scanLine(place.top() + y)) + place.left();
    for (int x = 0; x < place.width(); ++x)
      to[x] = from[x / layout::screen_scale];
  }
}

QPainterPath whole(const QRect &area) {
  QPainterPath path;
  path.addRect(area);
  return path;
}

void draw_round_light(QPainter &painter, const QRect &lamp, const QRect &light, int strength,
                      const LampColours &colours) {
  draw_glow(painter, lamp, whole(light), light.width() / 2.0, strength, colours);
  draw_lit_lamp(painter, lamp, colours);
}

void draw_button_light(QPainter &painter, std::size_t id) {
  if (id < dimensions::button_count)
    draw_key_light(painter, id);
  else
    draw_round_light(painter, layout::button_led(id), layout::button_light(id), 170, button_lamp);
}

void draw_lights(QPainter &painter, const PanelState &state) {
  for (std::size_t id = 0; id < dimensions::led_count; ++id) {
    if (state.button_leds[id])
      draw_button_light(painter, id);
    if (state.status_leds[id])
      draw_round_light(painter, layout::status_led(id), layout::status_light(id), 200, status_lamp);
  }
  for (std::size_t id = 0; id < dimensions::toggle_indicator_count; ++id)
    if (state.toggles[id])
      draw_round_light(painter, layout::toggle(id), layout::toggle_light(id), 235, toggle_lamp);
}

void draw_intensity(QPainter &painter, int intensity) {
  for (int level = 1; level <= intensity; ++level)
    painter.fillRect(layout::intensity_segment(level), segment_colour(level));
  const std::string number = std::to_string(intensity);
  const double right = layout::intensity_window.right() - 15;
  draw_lettering(
      painter,
      QPointF(right - lettering_width(number, intensity_number), QRectF(layout::intensity_window).center().y()), number,
      intensity_number);
}

} // namespace

QImage draw_panel(const PanelState &state) {
  static const QImage housing = draw_housing();
  QImage picture = housing;
  const int intensity = std::min(state.intensity, dimensions::highest_intensity_level);
  for (std::size_t id = 0; id < dimensions::screen_count; ++id)
    draw_screen(picture, id, state.screens[id], intensity);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  draw_lights(painter, state);
  draw_intensity(painter, intensity);
  return picture;
}

Outcome<Done> write_png(const QImage &image, const QString &file_name) {
  // Encoded in memory first, because Qt's PNG encoder leaks when its device stops taking bytes, as a full disk does.
  QBuffer encoded;
  QImageWriter writer(&encoded, "png");
  if (!writer.write(image))
    return Failure{writer.errorString()};
  QSaveFile file(file_name);
  if (!file.open(QIODevice::WriteOnly) || file.write(encoded.data()) != encoded.size() || !file.commit())
    return Failure{file.errorString()};
  return Done{};
}

} // namespace buttondriver::simulator
