#include "fpga/font_settings.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryFile>

namespace buttondriver {

namespace {

constexpr qint64 most_bytes_read = 64 * 1024;

FontSettings font_group(QSettings &settings) {
  settings.beginGroup(QStringLiteral("font"));
  return {settings.value(QStringLiteral("width"), 0).toInt(), settings.value(QStringLiteral("height"), 0).toInt()};
}

} // namespace

std::optional<FontSettings> read_font_settings(const QString &path) {
  const QFileInfo info(path);
  if (!info.exists())
    return FontSettings{};
  QFile file(path);
  if (!info.isFile() || !file.open(QIODevice::ReadOnly))
    return std::nullopt;
  // QSettings remembers what it has read under a name, and reads again only for another size or time. A copy under a
  // name of its own is always read.
  QTemporaryFile copy;
  const bool is_copied = copy.open() && copy.write(file.read(most_bytes_read)) >= 0 && copy.flush();
  QSettings settings(is_copied ? copy.fileName() : path, QSettings::IniFormat);
  if (settings.status() != QSettings::NoError)
    return std::nullopt;
  return font_group(settings);
}

} // namespace buttondriver
