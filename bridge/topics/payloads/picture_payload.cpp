// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/payloads/picture_payload.h"

#include "bytes/view_of.h"
#include "dimensions/panel_dimensions.h"
#include "pictures/bmp_file.h"
#include "pictures/picture_converter.h"
#include "pictures/picture_file.h"

#include <optional>

namespace buttondriver::bridge {

namespace {

/// Of the formats that can be read, those whose pictures cannot take long. A JPEG file of 160 KiB can take seconds: it
/// may go through its picture again and again.
bool is_bmp_or_png(const QByteArray &file) { return file.startsWith("BM") || file.startsWith("\x89PNG"); }

Failure no_picture(const QString &reason) {
  return Failure{QStringLiteral("the payload must be a BMP or PNG file: ") + reason};
}

QString extent(QSize size) { return QStringLiteral("%1x%2").arg(size.width()).arg(size.height()); }

} // namespace

Outcome<ScreenPicture> screen_picture(const QByteArray &payload, QPoint corner) {
  std::optional<QSize> size = size_of_screen_bmp(view_of(payload));
  if (!size) {
    if (!is_bmp_or_png(payload))
      return no_picture(QStringLiteral("it begins as neither of them"));
    const Outcome<QSize> declared = size_of_picture(payload);
    if (!declared)
      return no_picture(declared.failure().text);
    size = *declared;
  }
  const QSize room(dimensions::screen_width - corner.x(), dimensions::screen_height - corner.y());
  if (size->width() > room.width() || size->height() > room.height())
    return Failure{QStringLiteral("a picture of %1 at %2,%3 sticks out of the screen; there it may have %4 pixels")
                       .arg(extent(*size))
                       .arg(corner.x())
                       .arg(corner.y())
                       .arg(extent(room))};
  const Outcome<PlacedPicture> placed = place_picture(payload, corner, Oversize::refuse);
  if (!placed)
    return no_picture(placed.failure().text);
  return ScreenPicture{placed->bmp, *size};
}

} // namespace buttondriver::bridge
