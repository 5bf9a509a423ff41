// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/facts/font_sizes.h"

#include <QDir>
#include <QRegularExpression>

#include <set>
#include <utility>

namespace buttondriver::buttonctl {

QStringList font_sizes_in(const QString &folder) {
  static const QRegularExpression pattern(QStringLiteral("^([1-9]\\d{0,2})x([1-9]\\d{0,2})\\.pcf\\.gz$"));
  std::set<std::pair<int, int>> sizes;
  for (const QString &file : QDir(folder).entryList(QDir::Files))
    if (const auto match = pattern.match(file); match.hasMatch())
      sizes.insert({match.captured(1).toInt(), match.captured(2).toInt()});
  QStringList names;
  for (const auto &[width, height] : sizes)
    names += QStringLiteral("%1x%2").arg(width).arg(height);
  return names;
}

} // namespace buttondriver::buttonctl
