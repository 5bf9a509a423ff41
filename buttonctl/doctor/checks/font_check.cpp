// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/font_check.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>

#include <optional>

namespace buttondriver::buttonctl {

namespace {

const QString font_suffix = QStringLiteral(".pcf.gz");
const QString usual_size = QStringLiteral("8x16");
/// Where Debian's package xfonts-base puts its fonts.
const QString font_source = QStringLiteral("/usr/share/fonts/X11/misc/");

/// "10x20"
QString size_name(int width, int height) { return QStringLiteral("%1x%2").arg(width).arg(height); }

/// The command line that writes a configuration with a size such as "8x16".
QString write_configuration(const QString &file, const QString &size) {
  return QStringLiteral("mkdir -p %1 && printf '[font]\\nwidth=%2\\nheight=%3\\n' > %4")
      .arg(shell_word(QFileInfo(file).path()), size.section(QLatin1Char('x'), 0, 0),
           size.section(QLatin1Char('x'), 1, 1), shell_word(file));
}

struct Configuration {
  Finding finding;
  QString size; ///< empty when there is none
};

Configuration check_configuration(const QString &file, const FileLook &look) {
  const QString name = QStringLiteral("configuration");
  const QString rewrite = write_configuration(file, usual_size);
  const FileFacts facts = look(file);
  switch (facts.kind) {
  case FileFacts::Kind::missing:
    return {{name, QStringLiteral("%1 is missing, so that no font is loaded").arg(file), rewrite}, {}};
  case FileFacts::Kind::regular:
    break;
  default:
    return {{name, QStringLiteral("%1 is no file").arg(file),
             QStringLiteral("mv %1 %2 && ").arg(shell_word(file), shell_word(file + QLatin1String(".old"))) + rewrite},
            {}};
  }
  if (!facts.is_readable)
    return {
        {name, QStringLiteral("no permission to read %1").arg(file), QStringLiteral("chmod a+r ") + shell_word(file)},
        {}};

  // As the daemon reads it, so that both come to the same judgement.
  QSettings settings(file, QSettings::IniFormat);
  const int width = settings.value(QStringLiteral("font/width"), 0).toInt();
  const int height = settings.value(QStringLiteral("font/height"), 0).toInt();
  if (settings.status() != QSettings::NoError)
    return {{name, QStringLiteral("%1 is no INI file").arg(file), rewrite}, {}};
  if (width <= 0 || height <= 0)
    return {{name,
             QStringLiteral("%1 names no size of the font: 'width' and 'height' in '[font]' must be above 0").arg(file),
             rewrite},
            {}};
  return {{name, QStringLiteral("%1 asks for a font of %2").arg(file, size_name(width, height)), {}},
          size_name(width, height)};
}

/// A size of which there is a font in `folder`: the usual one if it is there; empty when there is none at all.
QString size_at_hand(const QString &folder) {
  const QStringList files = QDir(folder).entryList({QStringLiteral("*x*") + font_suffix}, QDir::Files);
  if (files.isEmpty() || files.contains(usual_size + font_suffix))
    return files.isEmpty() ? QString() : usual_size;
  return files.first().chopped(font_suffix.size());
}

Finding check_font(const SystemPaths &paths, const QString &size, const FileLook &look) {
  const QString name = QStringLiteral("font");
  const QString folder = QString::fromStdString(paths.font_directory);
  const QString file = folder + QLatin1Char('/') + size + font_suffix;
  const FileFacts facts = look(file);
  if (facts.kind == FileFacts::Kind::missing) {
    const QString other = size_at_hand(folder);
    if (!other.isEmpty())
      return {name, QStringLiteral("there is no font of %1 in %2").arg(size, folder),
              write_configuration(QString::fromStdString(paths.launcher_configuration), other)};
    return {name, QStringLiteral("there is no font at all in %1").arg(folder),
            QStringLiteral("apt-get install xfonts-base && mkdir -p %1 && cp %2[0-9]*x*%3 %1")
                .arg(shell_word(folder), font_source, font_suffix)};
  }
  if (facts.kind != FileFacts::Kind::regular)
    return {name, QStringLiteral("%1 is no file").arg(file),
            QStringLiteral("mv %1 %2 && cp %3 %1")
                .arg(shell_word(file), shell_word(file + QLatin1String(".old")), font_source + size + font_suffix)};
  if (!facts.is_readable)
    return {name, QStringLiteral("no permission to read %1").arg(file),
            QStringLiteral("chmod a+r ") + shell_word(file)};
  return {name, file, {}};
}

} // namespace

std::vector<Finding> check_configuration_and_font(const SystemPaths &paths, const FileLook &look) {
  const Configuration configuration = check_configuration(QString::fromStdString(paths.launcher_configuration), look);
  std::vector<Finding> findings = {configuration.finding};
  if (!configuration.size.isEmpty())
    findings.push_back(check_font(paths, configuration.size, look));
  return findings;
}

} // namespace buttondriver::buttonctl
