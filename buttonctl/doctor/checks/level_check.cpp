// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/level_check.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace buttondriver::buttonctl {

namespace {

constexpr int highest_percentage = 100;
constexpr int longest_shown = 40;

/// Empty when the daemon can use the line.
QString fault_of_line(const QByteArray &line) {
  const QList<QByteArray> words = line.simplified().split(' ');
  const QByteArray &word = words.first();
  if (word != "led" && word != "lcd" && word != "scr")
    return QStringLiteral("'%1' is none of 'led', 'lcd' and 'scr'").arg(QString::fromUtf8(word.left(longest_shown)));
  bool is_number = false;
  const int level = words.value(1).toInt(&is_number);
  if (!is_number || level < 0 || level > highest_percentage)
    return QStringLiteral("the level of '%1' must be 0 to %2")
        .arg(QString::fromLatin1(word), QString::number(highest_percentage));
  return {};
}

} // namespace

Finding check_levels(const SystemPaths &paths, const FileLook &look) {
  const QString name = QStringLiteral("levels");
  const QString file = QString::fromStdString(paths.button_level_file);
  const QString write = QStringLiteral("printf 'led 100\\nlcd 100\\nscr 100\\n' > %1").arg(shell_word(file));
  const QString rewrite = QStringLiteral("mkdir -p %1 && %2").arg(shell_word(QFileInfo(file).path()), write);
  const FileFacts facts = look(file);
  if (facts.kind == FileFacts::Kind::missing)
    return {name, QStringLiteral("%1 is missing, so that 'reconfig' changes nothing").arg(file), rewrite};
  if (facts.kind != FileFacts::Kind::regular)
    return {name, QStringLiteral("%1 is no file").arg(file),
            QStringLiteral("mv %1 %2 && %3").arg(shell_word(file), shell_word(file + QLatin1String(".old")), write)};
  QFile source(file);
  if (!facts.is_readable || !source.open(QIODevice::ReadOnly))
    return {name, QStringLiteral("no permission to read %1").arg(file),
            QStringLiteral("chmod a+r ") + shell_word(file)};
  int number = 0;
  while (!source.atEnd()) {
    ++number;
    const QByteArray line = source.readLine();
    if (line.trimmed().isEmpty())
      continue;
    const QString fault = fault_of_line(line);
    if (!fault.isEmpty())
      return {name, QStringLiteral("%1:%2: %3").arg(file, QString::number(number), fault), rewrite};
  }
  return {name, file, {}};
}

} // namespace buttondriver::buttonctl
