// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/difference/picture_difference.h"

#include "buttonctl/difference/label.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdlib>

namespace buttondriver::buttonctl {

namespace {

constexpr int enlargement = 3;
constexpr int gap = 12;
constexpr int heading = 24;
constexpr int label_margin = (heading - label_height) / 2;
constexpr Colour gap_colour{0x80, 0x80, 0x80};
constexpr Colour difference_colour{0xFF, 0, 0};

Colour quarter(Colour colour) {
  return {static_cast<std::uint8_t>(colour.red / 4), static_cast<std::uint8_t>(colour.green / 4),
          static_cast<std::uint8_t>(colour.blue / 4)};
}

int largest_distance(Colour one, Colour other) {
  return std::max({std::abs(one.red - other.red), std::abs(one.green - other.green), std::abs(one.blue - other.blue)});
}

} // namespace

int count_different_pixels(const Picture &expected, const Picture &actual, int tolerance) {
  int count = 0;
  for (int y = 0; y < expected.height(); ++y)
    for (int x = 0; x < expected.width(); ++x)
      if (largest_distance(expected.at(x, y), actual.at(x, y)) > tolerance)
        ++count;
  return count;
}

Picture difference_picture(const Picture &expected, const Picture &actual) {
  const QSize part = expected.size() * enlargement;
  Picture picture(QSize(3 * part.width() + 2 * gap, heading + part.height()), gap_colour);
  const int second = part.width() + gap;
  const int third = 2 * second;
  draw_label(picture, 0, label_margin, "expected");
  draw_label(picture, second, label_margin, "actual");
  draw_label(picture, third, label_margin, "difference");
  for (int y = 0; y < part.height(); ++y) {
    for (int x = 0; x < part.width(); ++x) {
      const Colour should = expected.at(x / enlargement, y / enlargement);
      const Colour is = actual.at(x / enlargement, y / enlargement);
      picture.set(x, heading + y, should);
      picture.set(second + x, heading + y, is);
      picture.set(third + x, heading + y, should == is ? quarter(should) : difference_colour);
    }
  }
  return picture;
}

QString difference_file(const QString &folder, const QString &expected_file) {
  return QDir::cleanPath(folder + QLatin1Char('/') + QFileInfo(expected_file).completeBaseName() + difference_ending);
}

} // namespace buttondriver::buttonctl
