// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QByteArray>
#include <QPoint>
#include <QSize>

namespace buttondriver::bridge {

/// A picture as the panel takes it.
struct ScreenPicture {
  QByteArray bmp;
  QSize size;
};

/// The BMP or PNG file in `payload` for a screen, its top left corner at `corner`, which lies on the screen. A BMP that
/// the panel understands is shared, not copied. What does not fit the screen is refused before it is decompressed.
Outcome<ScreenPicture> screen_picture(const QByteArray &payload, QPoint corner);

} // namespace buttondriver::bridge
