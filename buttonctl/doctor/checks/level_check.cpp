// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/level_check.h"

#include "buttonctl/doctor/checks/file_check.h"

#include <QFile>
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
  const FileFacts facts = look(file);
  if (facts.kind == FileFacts::Kind::missing)
    return {name, QStringLiteral("%1 is not there, and need not be: the levels stay as they are").arg(file), {}};
  if (const auto fault = fault_of_file(name, file, facts))
    return *fault;
  QFile source(file);
  if (!source.open(QIODevice::ReadOnly))
    return note(name, QStringLiteral("%1 is not for you to read, so that its lines were not looked at").arg(file));
  int number = 0;
  while (!source.atEnd()) {
    ++number;
    const QByteArray line = source.readLine();
    if (line.trimmed().isEmpty())
      continue;
    const QString fault = fault_of_line(line);
    if (!fault.isEmpty())
      return {name, QStringLiteral("%1:%2: %3").arg(file, QString::number(number), fault),
              edit(file, QStringLiteral("a line such as: scr 100"), QStringLiteral("+%1").arg(number))};
  }
  return {name, file, {}};
}

} // namespace buttondriver::buttonctl
