// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/testing/scenario_files.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

const QString ending = QStringLiteral(".scenario");

QStringList scenarios_below(const QString &folder) {
  QStringList files;
  QDirIterator iterator(folder, {QLatin1Char('*') + ending}, QDir::Files, QDirIterator::Subdirectories);
  while (iterator.hasNext())
    files += iterator.next();
  // By bytes, the same in every locale.
  std::sort(files.begin(), files.end());
  return files;
}

QString without_ending(QString file) {
  if (file.endsWith(ending))
    file.chop(ending.size());
  return file;
}

} // namespace

Outcome<QStringList> scenario_files(const QStringList &places) {
  QStringList files;
  for (const QString &place : places) {
    const QFileInfo info(place);
    if (!info.exists())
      return Failure{QStringLiteral("there is no '%1'").arg(place)};
    if (!info.isDir()) {
      files += place;
      continue;
    }
    const QStringList found = scenarios_below(QDir::cleanPath(place));
    if (found.isEmpty())
      return Failure{QStringLiteral("there is no *%1 in '%2'").arg(ending, place)};
    files += found;
  }
  QStringList once;
  QSet<QString> seen;
  for (const QString &file : files) {
    const QString path = QFileInfo(file).canonicalFilePath();
    if (!seen.contains(path))
      once += file;
    seen += path;
  }
  return once;
}

QStringList folder_names(const QStringList &files) {
  QStringList names;
  for (const QString &file : files) {
    QStringList parts;
    for (const QString &part : without_ending(QDir::cleanPath(file)).split(QLatin1Char('/')))
      if (!part.isEmpty() && part != QLatin1String(".."))
        parts += part;
    const QString name = parts.join(QLatin1Char('-'));
    QString different = name;
    for (int number = 2; names.contains(different); ++number)
      different = QStringLiteral("%1-%2").arg(name).arg(number);
    names += different;
  }
  return names;
}

} // namespace buttondriver::buttonctl
