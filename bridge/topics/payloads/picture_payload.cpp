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

QString extent(QSize size) { return QStringLiteral("%1x%2").arg(size.width()).arg(size.height()); }

} // namespace

Outcome<ScreenPicture> screen_picture(const QByteArray &payload, QPoint corner) {
  std::optional<QSize> size = size_of_screen_bmp(view_of(payload));
  if (!size) {
    const Outcome<QSize> declared = size_of_picture(payload);
    if (!declared)
      return Failure{QStringLiteral("the payload must be a picture file, BMP or PNG: ") + declared.failure().text};
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
    return Failure{QStringLiteral("the payload must be a picture file, BMP or PNG: ") + placed.failure().text};
  return ScreenPicture{placed->bmp, *size};
}

} // namespace buttondriver::bridge
