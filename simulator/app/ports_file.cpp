// SPDX-License-Identifier: Apache-2.0
#include "simulator/app/ports_file.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace buttondriver::simulator {

Outcome<Done> write_ports(const QString &file, std::optional<quint16> daemon, std::optional<quint16> http) {
  QByteArray lines;
  if (daemon)
    lines += "daemon=" + QByteArray::number(*daemon) + '\n';
  if (http)
    lines += "http=" + QByteArray::number(*http) + '\n';
  QSaveFile output(file);
  if (!output.open(QIODevice::WriteOnly) || output.write(lines) != lines.size() || !output.commit())
    return Failure{QStringLiteral("cannot write %1: %2").arg(file, output.errorString())};
  return Done{};
}

void remove_ports(const QString &file) {
  const QFileInfo old(file);
  if (old.isFile() && !old.isSymLink())
    QFile::remove(file);
}

} // namespace buttondriver::simulator
