// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/batch_reader.h"

#include "buttonctl/arguments/line_place.h"
#include "buttonctl/commands/command_line.h"

#include <QFile>

namespace buttondriver::buttonctl {

Outcome<std::vector<BatchLine>> read_batch(const CommandTable &commands, const QString &file) {
  QFile source(file);
  if (!source.open(QIODevice::ReadOnly))
    return Failure{QStringLiteral("batch: cannot read '%1': %2").arg(file, source.errorString())};
  std::vector<BatchLine> lines;
  int number = 0;
  for (const QByteArray &line : source.readAll().split('\n')) {
    ++number;
    const Outcome<Steps> steps = parse_batch_line(commands, line);
    if (!steps)
      return Failure{line_place(file, number) + steps.failure().text};
    if (!steps->empty())
      lines.push_back({line_place(file, number), *steps});
  }
  return lines;
}

} // namespace buttondriver::buttonctl
