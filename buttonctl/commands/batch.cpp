// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/batch.h"

#include "buttonctl/commands/command_line.h"

#include <QFile>

namespace buttondriver::buttonctl {

QString batch_place(const QString &file, int line) {
  return QStringLiteral("%1:%2: ").arg(file, QString::number(line));
}

Outcome<std::vector<BatchLine>> read_batch(const QString &file) {
  QFile source(file);
  if (!source.open(QIODevice::ReadOnly))
    return Failure{QStringLiteral("batch: cannot read '%1': %2").arg(file, source.errorString())};
  std::vector<BatchLine> lines;
  int number = 0;
  for (const QByteArray &line : source.readAll().split('\n')) {
    ++number;
    const Outcome<Steps> steps = parse_batch_line(line);
    if (!steps)
      return Failure{batch_place(file, number) + steps.failure().text};
    if (!steps->empty())
      lines.push_back({batch_place(file, number), *steps});
  }
  return lines;
}

} // namespace buttondriver::buttonctl
