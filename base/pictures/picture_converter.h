// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QByteArray>
#include <QPoint>

/// Picture files made into what the panel takes. The failures do not name the file.
namespace buttondriver {

/// What happens to a picture that sticks out of the screen. The panel does not cut such a picture off but shears it.
enum class Oversize {
  refuse,
  fit,  ///< every picture is scaled, its proportions kept, to the room right of and below its corner
  crop, ///< the part that lies on the screen is left
};

struct PlacedPicture {
  QByteArray bmp; ///< an uncompressed 24-bit BMP file
  QPoint corner;  ///< where its top left pixel goes
};

/// The picture in `file` for a screen, its top left corner at `corner`. A BMP that the panel understands and that needs
/// no change comes back byte for byte; anything else that read_picture() can read is converted.
Outcome<PlacedPicture> place_picture(const QByteArray &file, QPoint corner, Oversize oversize);

struct ButtonImageWishes {
  bool invert = false; ///< turn all bits, those of raw bytes too
  bool fit = false;    ///< a picture of another size is scaled, its proportions kept, and put in the middle on black
};

/// The bytes of a button image: `file` itself when it is that long and no PNG, else a picture of its size, in which the
/// lighter half of the greys becomes 1.
Outcome<QByteArray> convert_button_image(const QByteArray &file, ButtonImageWishes wishes);

} // namespace buttondriver
