// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPainter>
#include <QPainterPath>
#include <QRect>

namespace buttondriver::simulator {

/// The colours of one kind of lamp, from its middle to its edge, and of the light that it throws around itself.
struct LampColours {
  QRgb dark;
  QRgb core;
  QRgb body;
  QRgb edge;
  QRgb glow;
};

inline constexpr LampColours button_lamp = {0xFF2A211A, 0xFFFFF6E0, 0xFFFFC25C, 0xFFF09A2C, 0xFFFFA63A};
inline constexpr LampColours status_lamp = {0xFF16251E, 0xFFF0FFF7, 0xFF5CF5A6, 0xFF22C274, 0xFF2FE78C};
inline constexpr LampColours toggle_lamp = {0xFF18232E, 0xFFF2FAFF, 0xFF72C8FF, 0xFF2A93E8, 0xFF45AEFF};

/// A lamp that is off. A square `lamp` is round, a longer one a bar with round ends.
void draw_dark_lamp(QPainter &painter, const QRect &lamp, const LampColours &colours);

/// A lamp that is on, without its glow.
void draw_lit_lamp(QPainter &painter, const QRect &lamp, const LampColours &colours);

/// The light around a lamp: strongest at the middle of `lamp`, nothing `reach` pixels away, and only inside `area`.
/// `strength` is the opacity at the middle, 0 to 255.
void draw_glow(QPainter &painter, const QRect &lamp, const QPainterPath &area, double reach, int strength,
               const LampColours &colours);

} // namespace buttondriver::simulator
