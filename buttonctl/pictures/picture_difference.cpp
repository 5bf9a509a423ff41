// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/pictures/picture_difference.h"

#include <QDir>
#include <QFileInfo>

#include <optional>

namespace buttondriver::buttonctl {

namespace {

constexpr int gap = 4;
constexpr QRgb gap_colour = 0xFF808080;
constexpr QRgb difference_colour = 0xFFFF0000;

constexpr QRgb opaque_black = 0xFF000000;

/// The pixel at a place, opaque; nothing outside the picture.
std::optional<QRgb> pixel(const QImage &image, int x, int y) {
  if (!image.valid(x, y))
    return std::nullopt;
  return image.pixel(x, y) | opaque_black;
}

bool differs(const QImage &expected, const QImage &actual, int x, int y) {
  return pixel(expected, x, y) != pixel(actual, x, y);
}

QRgb quarter(QRgb colour) { return qRgb(qRed(colour) / 4, qGreen(colour) / 4, qBlue(colour) / 4); }

} // namespace

int count_different_pixels(const QImage &expected, const QImage &actual) {
  const QSize size = expected.size().expandedTo(actual.size());
  int count = 0;
  for (int y = 0; y < size.height(); ++y)
    for (int x = 0; x < size.width(); ++x)
      if (differs(expected, actual, x, y))
        ++count;
  return count;
}

QImage difference_picture(const QImage &expected, const QImage &actual) {
  const QSize size = expected.size().expandedTo(actual.size());
  QImage picture(3 * size.width() + 2 * gap, size.height(), QImage::Format_RGB32);
  picture.fill(gap_colour);
  const int second = size.width() + gap;
  const int third = 2 * second;
  for (int y = 0; y < size.height(); ++y) {
    for (int x = 0; x < size.width(); ++x) {
      const QRgb should = pixel(expected, x, y).value_or(opaque_black);
      picture.setPixel(x, y, should);
      picture.setPixel(second + x, y, pixel(actual, x, y).value_or(opaque_black));
      picture.setPixel(third + x, y, differs(expected, actual, x, y) ? difference_colour : quarter(should));
    }
  }
  return picture;
}

QString difference_file(const QString &expected_file) {
  const QFileInfo file(expected_file);
  return QDir::cleanPath(file.path() + QLatin1Char('/') + file.completeBaseName() + QLatin1String(".difference.png"));
}

} // namespace buttondriver::buttonctl
