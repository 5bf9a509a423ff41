// SPDX-License-Identifier: Apache-2.0
#include "fpga/font_settings.h"

#include "files/regular_file.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryFile>

namespace buttondriver {

namespace {

constexpr qint64 most_bytes = 64 * 1024;

FontSettings font_group(QSettings &settings) {
  settings.beginGroup(QStringLiteral("font"));
  return {settings.value(QStringLiteral("width"), 0).toInt(), settings.value(QStringLiteral("height"), 0).toInt()};
}

} // namespace

std::optional<FontSettings> read_font_settings(const QString &path) {
  if (!QFileInfo::exists(path))
    return FontSettings{};
  QFile file;
  OwnedDescriptor descriptor = open_regular_file(QFile::encodeName(path).constData());
  if (!descriptor || !file.open(descriptor.get(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
    return std::nullopt;
  descriptor.release(); // the QFile closes it
  // QSettings reads nested lists recursively; the limit on the length bounds the stack that a hostile file can take.
  if (file.size() > most_bytes)
    return std::nullopt;
  // QSettings remembers what it has read under a name, and reads again only for another size or time. A copy under a
  // name of its own is always read.
  const QByteArray content = file.read(most_bytes);
  QTemporaryFile copy;
  const bool is_copied = copy.open() && copy.write(content) == content.size() && copy.flush();
  QSettings settings(is_copied ? copy.fileName() : path, QSettings::IniFormat);
  if (settings.status() != QSettings::NoError)
    return std::nullopt;
  return font_group(settings);
}

} // namespace buttondriver
