// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/look/frame.h"

#include "buttonctl/look/state_text.h"
#include "pictures/picture_file.h"

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

/// A sign for each lamp as it is at this moment, blinking or not, in groups of eight.
template <class Lamps> QString lamp_row(const QString &name, const Lamps &lamps) {
  constexpr int lamps_a_group = 8;
  constexpr int name_width = 8;
  QString row = name.leftJustified(name_width);
  for (std::size_t i = 0; i < lamps.size(); ++i) {
    if (i > 0 && i % lamps_a_group == 0)
      row += QLatin1Char(' ');
    row += lamps[i] ? QStringLiteral("\u25cf") : QStringLiteral("\u00b7");
  }
  return row;
}

} // namespace

QStringList frame(const std::vector<Picture> &screens, const PanelReport &report, Colours colours, QSize size) {
  QStringList lamps{lamp_row(QStringLiteral("LEDs"), report.button_leds),
                    lamp_row(QStringLiteral("status"), report.status_leds),
                    lamp_row(QStringLiteral("toggles"), report.toggles)};
  lamps += lamps_text(report).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  for (QString &line : lamps)
    line.truncate(size.width());

  const int count = static_cast<int>(screens.size());
  const int columns = count > 0 ? (size.width() - (count - 1)) / count : 0;
  const int rows = size.height() - static_cast<int>(lamps.size());
  std::vector<Picture> pictures;
  for (const Picture &screen : screens) {
    const int side = std::max(2, std::min({columns, 2 * rows, screen.width()}));
    pictures.push_back(side == screen.width() ? screen
                                              : scaled(screen, {side, side * screen.height() / screen.width()}));
  }
  return half_blocks(pictures, colours) + lamps;
}

} // namespace buttondriver::buttonctl
