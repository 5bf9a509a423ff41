// SPDX-License-Identifier: Apache-2.0
#include "pictures/picture_converter.h"

#include "bytes/view_of.h"
#include "dimensions/panel_dimensions.h"
#include "pictures/bmp_file.h"
#include "pictures/picture_file.h"

#include <QRect>

#include <optional>

namespace buttondriver {

namespace {

using dimensions::button_image_bytes;
using dimensions::screen_height;
using dimensions::screen_width;

const QSize screen_size(screen_width, screen_height);
const QSize button_image_size(dimensions::button_image_width, dimensions::button_image_height);
constexpr int lightest_dark_grey = 127;

/// Lighter to the eye in green than in blue; 0 to 255.
int grey(Colour colour) { return (11 * colour.red + 16 * colour.green + 5 * colour.blue) / 32; }

/// What lies in `part`, which the picture contains.
Picture cut_out(const Picture &picture, const QRect &part) {
  Picture result(part.size());
  for (int y = 0; y < part.height(); ++y)
    for (int x = 0; x < part.width(); ++x)
      result.set(x, y, picture.at(part.x() + x, part.y() + y));
  return result;
}

/// The whole of `picture` as large as `size` allows, in the middle, black beside it.
Picture fitted_into(QSize size, const Picture &picture) {
  const Picture part = scaled(picture, picture.size().scaled(size, Qt::KeepAspectRatio).expandedTo({1, 1}));
  const int left = (size.width() - part.width()) / 2;
  const int top = (size.height() - part.height()) / 2;
  Picture result(size);
  for (int y = 0; y < part.height(); ++y)
    for (int x = 0; x < part.width(); ++x)
      result.set(left + x, top + y, part.at(x, y));
  return result;
}

/// A bit for each pixel of a picture that has the right size.
QByteArray bits_of(const Picture &picture) {
  QByteArray bits(button_image_bytes, '\0');
  for (int y = 0; y < button_image_size.height(); ++y) {
    for (int x = 0; x < button_image_size.width(); ++x) {
      const int place = y * (button_image_size.width() / 8) + x / 8;
      if (grey(picture.at(x, y)) > lightest_dark_grey)
        bits[place] = static_cast<char>(bits[place] | 0x80 >> x % 8);
    }
  }
  return bits;
}

QString extent(QSize size) { return QStringLiteral("%1x%2").arg(size.width()).arg(size.height()); }

Failure does_not_fit(QSize size, QPoint corner) {
  return Failure{QStringLiteral("a picture of %1 at %2,%3 sticks out of the %4 screen; use --fit or --crop")
                     .arg(extent(size))
                     .arg(corner.x())
                     .arg(corner.y())
                     .arg(extent(screen_size))};
}

} // namespace

Outcome<PlacedPicture> place_picture(const QByteArray &file, QPoint corner, Oversize oversize) {
  const QRect screen(QPoint(0, 0), screen_size);
  if (oversize == Oversize::fit && !screen.contains(corner))
    return Failure{QStringLiteral("--fit needs a corner on the screen, from 0,0 to %1,%2")
                       .arg(screen_width - 1)
                       .arg(screen_height - 1)};

  std::optional<QSize> size = size_of_screen_bmp(view_of(file));
  Picture picture;
  if (!size) {
    const Outcome<Picture> read = read_picture(file);
    if (!read)
      return read.failure();
    picture = *read;
    size = picture.size();
  }

  const QRect wanted(corner, *size);
  const QRect visible = wanted.intersected(screen);
  QSize fitted = *size;
  switch (oversize) {
  case Oversize::refuse:
    if (visible != wanted)
      return does_not_fit(*size, corner);
    break;
  case Oversize::crop:
    if (visible.isEmpty())
      return Failure{QStringLiteral("no part of the picture lies on the screen; change --at")};
    break;
  case Oversize::fit:
    fitted =
        size->scaled(screen_width - corner.x(), screen_height - corner.y(), Qt::KeepAspectRatio).expandedTo({1, 1});
    break;
  }

  const bool unchanged = oversize == Oversize::fit ? fitted == *size : visible == wanted;
  if (picture.isNull()) {
    if (unchanged)
      return PlacedPicture{file, corner};
    const Outcome<Picture> read = read_picture(file);
    if (!read)
      return read.failure();
    picture = *read;
  }
  if (oversize == Oversize::fit && !unchanged)
    picture = scaled(picture, fitted);
  else if (!unchanged)
    picture = cut_out(picture, visible.translated(-corner));
  return PlacedPicture{write_screen_bmp(picture), oversize == Oversize::fit ? corner : visible.topLeft()};
}

Outcome<QByteArray> convert_button_image(const QByteArray &file, ButtonImageWishes wishes) {
  QByteArray bits = file;
  if (file.size() != button_image_bytes || file.startsWith("\x89PNG")) {
    const Outcome<Picture> read = read_picture(file);
    if (!read)
      return Failure{QStringLiteral("not %1 raw bytes, and %2").arg(button_image_bytes).arg(read.failure().text)};
    if (read->size() != button_image_size && !wishes.fit)
      return Failure{QStringLiteral("a button image is %1 pixels, this picture is %2; use --fit")
                         .arg(extent(button_image_size), extent(read->size()))};
    bits = bits_of(read->size() == button_image_size ? *read : fitted_into(button_image_size, *read));
  }
  if (wishes.invert)
    for (char &byte : bits)
      byte = static_cast<char>(~byte);
  return bits;
}

} // namespace buttondriver
