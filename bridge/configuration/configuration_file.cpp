// SPDX-License-Identifier: Apache-2.0
#include "bridge/configuration/configuration_file.h"

#include "bridge/configuration/configuration_reader.h"
#include "bridge/configuration/ini_file.h"
#include "bridge/configuration/problems.h"
#include "files/regular_file.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

namespace buttondriver::bridge {

Outcome<Configuration> read_configuration(const QByteArray &text, const QString &file) {
  if (text.size() > most_configuration_bytes)
    return Failure{QStringLiteral("%1: larger than 4 MiB").arg(file)};
  Problems problems;
  ConfigurationReader reader(QFileInfo(file).absoluteDir(), problems);
  const IniFile content = ini_file(text, problems);
  for (const IniSection &section : content.sections)
    reader.take(section);
  for (const IniLine &line : content.lines)
    reader.take(line);
  Configuration configuration = reader.finish();
  if (problems.areNone())
    return configuration;
  return Failure{problems.text(file)};
}

Outcome<Configuration> read_configuration_file(const QString &file) {
  OwnedDescriptor descriptor = open_regular_file(QFile::encodeName(file).constData());
  if (!descriptor)
    return Failure{QStringLiteral("%1: %2").arg(file, errno == EINVAL ? QStringLiteral("not a regular file")
                                                                      : QString::fromLocal8Bit(std::strerror(errno)))};
  QFile opened;
  if (!opened.open(descriptor.get(), QIODevice::ReadOnly))
    return Failure{QStringLiteral("%1: %2").arg(file, opened.errorString())};
  const QByteArray text = opened.read(most_configuration_bytes + 1);
  if (opened.error() != QFileDevice::NoError)
    return Failure{QStringLiteral("%1: %2").arg(file, opened.errorString())};
  return read_configuration(text, file);
}

} // namespace buttondriver::bridge
