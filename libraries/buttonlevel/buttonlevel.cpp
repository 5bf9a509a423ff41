// SPDX-License-Identifier: Apache-2.0
#include "buttonlevel/buttonlevel.h"

#include "files/regular_file.h"
#include "files/system_paths.h"
#include "logging/log_line.h"

#include <QByteArray>
#include <QFile>

#include <fcntl.h>
#include <unistd.h>

namespace buttondriver {

namespace {

constexpr int level_count = 2;

QString default_level() { return QStringLiteral("100"); }

bool open_text_file(QFile &file, const std::string &path, int flags, QIODevice::OpenMode mode) {
  OwnedDescriptor descriptor = open_regular_file(path.c_str(), flags);
  if (!descriptor)
    return false;
  // The QFile closes it. It fails only for a mode that neither reads nor writes.
  return file.open(descriptor.release(), mode | QIODevice::Text, QFileDevice::AutoCloseHandle);
}

/// The lines of `content` without their ends; the last one needs no end, unless it was `cut` in two.
QStringList lines_of(const QByteArray &content, bool cut) {
  QStringList lines;
  decltype(content.size()) begin = 0;
  while (begin < content.size()) {
    const auto line_feed_at = content.indexOf('\n', begin);
    if (line_feed_at < 0 && cut)
      break;
    const auto end = line_feed_at < 0 ? content.size() : line_feed_at;
    lines += QString::fromUtf8(content.constData() + begin, end - begin);
    begin = end + 1;
  }
  return lines;
}

void store_level(QStringList &levels, int index, const QString &level) {
  while (levels.size() < level_count)
    levels += QString();
  levels[index] = level;
}

void take_line(QStringList &levels, const QString &line) {
  const QStringList parts = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
  if (parts.size() < 2)
    return;
  const QString key = parts[0].trimmed();
  if (key == QLatin1String("lcd"))
    store_level(levels, 0, parts[1].trimmed());
  else if (key == QLatin1String("scr"))
    store_level(levels, 1, parts[1].trimmed());
}

} // namespace

const std::string &buttonlevel_path() {
  static const SystemPaths paths;
  return paths.button_level_file;
}

void writeButtonlevelFile(const QStringList &levels, const std::string &path) {
  QFile file;
  if (!open_text_file(file, path, O_WRONLY | O_CREAT | O_TRUNC, QIODevice::WriteOnly)) {
    debug_line() << "writeButtonlevelFile : Unable to open " << path.c_str();
    return;
  }
  // One after the other: a mark in the first level is filled in by the second.
  const QString text =
      QStringLiteral("lcd %1\nscr %2\n").arg(levels.value(0, default_level())).arg(levels.value(1, default_level()));
  file.write(text.toLatin1());
}

void writeDefaultButtonlevelFile(const std::string &path) { writeButtonlevelFile({}, path); }

bool readButtonlevelFile(QStringList &levels, const std::string &path) {
  if (::access(path.c_str(), F_OK) != 0)
    writeDefaultButtonlevelFile(path);
  QFile file;
  if (!open_text_file(file, path, O_RDONLY, QIODevice::ReadOnly)) {
    debug_line() << "readButtonlevelFile: Unable to open file " << path.c_str() << line_feed;
    return false;
  }
  const QByteArray content = file.read(qint64{most_button_level_bytes});
  const bool is_cut = !file.atEnd();
  for (const QString &line : lines_of(content, is_cut)) {
    debug_line() << "line = " << line << line_feed;
    take_line(levels, line);
  }
  if (is_cut)
    debug_line() << "readButtonlevelFile: File too long, not read beyond byte" << qint64{most_button_level_bytes};
  return !levels.isEmpty();
}

} // namespace buttondriver
