// SPDX-License-Identifier: Apache-2.0
#include "simulator/simulation/panel_root.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <utility>
#include <vector>

namespace buttondriver::simulator {

namespace {

const QString font_ending = QStringLiteral(".pcf.gz");

/// The sizes of all fonts in the folder, the smallest first.
QStringList font_sizes(const QString &folder) {
  std::vector<QSize> sizes;
  for (const QString &file : QDir(folder).entryList({QLatin1Char('*') + font_ending}, QDir::Files))
    if (const QSize size = read_font_size(file.left(file.size() - font_ending.size())); size.isValid())
      sizes.push_back(size);
  std::sort(sizes.begin(), sizes.end(), [](QSize left, QSize right) {
    return std::pair(left.width(), left.height()) < std::pair(right.width(), right.height());
  });
  QStringList names;
  for (const QSize size : sizes)
    names += QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
  return names;
}

} // namespace

QString ready_made_root() {
  return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/buttondriver/panel-root"));
}

QSize read_font_size(const QString &text) {
  static const QRegularExpression size(QStringLiteral("\\A([1-9][0-9]{0,2})x([1-9][0-9]{0,2})\\z"));
  const QRegularExpressionMatch match = size.match(text);
  return match.hasMatch() ? QSize(match.captured(1).toInt(), match.captured(2).toInt()) : QSize();
}

Outcome<QString> find_font(const QString &folder, QSize size) {
  const QString name = QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
  const QString file = folder + QLatin1Char('/') + name + font_ending;
  if (QFile::exists(file))
    return file;
  const QStringList sizes = font_sizes(folder);
  const QString others =
      sizes.isEmpty() ? QStringLiteral("there are none") : QStringLiteral("there are ") + sizes.join(QLatin1Char(' '));
  return Failure{QStringLiteral("there is no font %1 in %2; %3").arg(name, folder, others)};
}

} // namespace buttondriver::simulator
