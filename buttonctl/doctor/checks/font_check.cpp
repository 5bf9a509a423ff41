// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/font_check.h"

#include "buttonctl/doctor/checks/file_check.h"
#include "buttonctl/doctor/facts/font_sizes.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>

#include <optional>

namespace buttondriver::buttonctl {

namespace {

/// "10x20"
QString size_name(int width, int height) { return QStringLiteral("%1x%2").arg(width).arg(height); }

/// What a configuration has to hold for the size that everybody has.
const QString usual_lines = QStringLiteral("in the group [font]: width=8 and height=16");

const QString usual_size = QStringLiteral("8x16");

struct Configuration {
  Finding finding;
  QString size; ///< empty when there is none
};

Configuration check_configuration(const QString &file, const FileLook &look) {
  const QString name = QStringLiteral("configuration");
  const FileFacts facts = look(file);
  if (facts.kind == FileFacts::Kind::missing)
    return {{name, QStringLiteral("%1 is missing, so that no font is loaded").arg(file),
             QStringLiteral("mkdir -p %1 && printf '[font]\\nwidth=8\\nheight=16\\n' >> %2")
                 .arg(shell_word(QFileInfo(file).path()), shell_word(file))},
            {}};
  if (const auto fault = fault_of_file(name, file, facts))
    return {*fault, {}};
  if (!QFile(file).open(QIODevice::ReadOnly))
    return {note(name, QStringLiteral("%1 is not for you to read, so that its size is not known").arg(file)), {}};

  // As the daemon reads it, so that both come to the same judgement.
  QSettings settings(file, QSettings::IniFormat);
  const int width = settings.value(QStringLiteral("font/width"), 0).toInt();
  const int height = settings.value(QStringLiteral("font/height"), 0).toInt();
  if (settings.status() != QSettings::NoError)
    return {{name, QStringLiteral("%1 is no INI file").arg(file), edit(file, usual_lines)}, {}};
  if (width <= 0 || height <= 0)
    return {{name,
             QStringLiteral("%1 names no size of the font: 'width' and 'height' in '[font]' must be above 0").arg(file),
             edit(file, usual_lines)},
            {}};
  return {{name, QStringLiteral("%1 asks for a font of %2").arg(file, size_name(width, height)), {}},
          size_name(width, height)};
}

/// Where they can come from: the package, or its folder when it is installed already. A link never replaces what is
/// there.
Finding no_fonts(const QString &name, const QString &folder, const QString &root) {
  const QString source = root + QLatin1String(package_font_folder);
  const QStringList sizes = font_sizes_in(source);
  const QString nothing = QStringLiteral("there is no font at all in %1").arg(folder);
  const QFileInfo place(folder);
  if (sizes.isEmpty() && place.isSymLink())
    return {name, nothing,
            QStringLiteral("apt-get install xfonts-base    # %1 is a link to %2").arg(folder, place.symLinkTarget())};
  const QString way = place.isSymLink() && !place.exists() ? QLatin1String("rm ") + shell_word(folder)
                                                           : QLatin1String("mkdir -p ") + shell_word(place.path());
  const QString link =
      place.isDir() ? QStringLiteral("ln -s %1/[0-9]*x*%2 %3").arg(shell_word(source), font_suffix, shell_word(folder))
                    : QStringLiteral("%1 && ln -sT %2 %3").arg(way, shell_word(source), shell_word(folder));
  if (sizes.isEmpty())
    return {name, nothing, QStringLiteral("apt-get install xfonts-base && ") + link};
  return {name, QStringLiteral("%1; sizes in %2: %3").arg(nothing, source, sizes.join(QLatin1Char(' '))), link};
}

Finding check_font(const SystemPaths &paths, const QString &root, const QString &size, const FileLook &look) {
  const QString name = QStringLiteral("font");
  const QString folder = QString::fromStdString(paths.font_directory);
  const QString file = folder + QLatin1Char('/') + size + font_suffix;
  const FileFacts facts = look(file);
  if (const auto fault = fault_of_file(name, file, facts))
    return *fault;
  const QStringList sizes = font_sizes_in(folder);
  if (facts.kind != FileFacts::Kind::missing)
    return {name, QStringLiteral("%1; sizes there: %2").arg(file, sizes.join(QLatin1Char(' '))), {}};
  if (sizes.isEmpty())
    return no_fonts(name, folder, root);
  const QString other = sizes.contains(usual_size) ? usual_size : sizes.first();
  return {
      name,
      QStringLiteral("there is no font of %1 in %2; sizes there: %3").arg(size, folder, sizes.join(QLatin1Char(' '))),
      edit(QString::fromStdString(paths.launcher_configuration),
           QStringLiteral("in the group [font]: width=%1 and height=%2")
               .arg(other.section(QLatin1Char('x'), 0, 0), other.section(QLatin1Char('x'), 1, 1)))};
}

} // namespace

std::vector<Finding> check_configuration_and_font(const SystemPaths &paths, const QString &root, const FileLook &look) {
  const Configuration configuration = check_configuration(QString::fromStdString(paths.launcher_configuration), look);
  std::vector<Finding> findings = {configuration.finding};
  if (!configuration.size.isEmpty())
    findings.push_back(check_font(paths, root, configuration.size, look));
  return findings;
}

} // namespace buttondriver::buttonctl
