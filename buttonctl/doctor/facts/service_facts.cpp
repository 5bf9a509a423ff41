// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/facts/service_facts.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>

namespace buttondriver::buttonctl {

namespace {

const QString unit_name = QStringLiteral("buttondriver.service");
/// Those that come first win.
const QStringList unit_folders = {
    QStringLiteral("/etc/systemd/system"),           QStringLiteral("/run/systemd/system"),
    QStringLiteral("/usr/local/lib/systemd/system"), QStringLiteral("/usr/lib/systemd/system"),
    QStringLiteral("/lib/systemd/system"),
};
/// A program is some hundred KiB; a much larger file is none of ours.
constexpr qint64 most_of_program = qint64{64} * 1024 * 1024;

QString text_of(const QString &path) {
  QFile file(path);
  return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The unit and then its drop-ins, in the order in which they count. A drop-in hides those of its name in later
/// folders.
QString whole_text(const QString &root, const QString &unit) {
  QMap<QString, QString> drop_ins;
  for (const QString &folder : unit_folders) {
    const QDir extras(root + folder + QLatin1Char('/') + unit_name + QLatin1String(".d"));
    for (const QString &name : extras.entryList({QStringLiteral("*.conf")}, QDir::Files | QDir::System))
      if (!drop_ins.contains(name))
        drop_ins.insert(name, extras.filePath(name));
  }
  QString text = text_of(unit);
  for (const QString &file : drop_ins)
    text += QLatin1Char('\n') + text_of(file);
  return text;
}

void read_settings(const QString &text, ServiceFacts &facts) {
  static const QRegularExpression start(QStringLiteral("^ExecStart=[-@:+!]*([^\\s]*)"));
  static const QRegularExpression port(QStringLiteral("^Environment=.*\\bBUTTONDRIVER_PORT=(\\d{1,5})\\b"));
  for (const QString &line : text.split(QLatin1Char('\n'))) {
    if (const auto match = start.match(line); match.hasMatch())
      facts.program = match.captured(1);
    if (const auto match = port.match(line); match.hasMatch())
      facts.port = match.captured(1).toInt();
  }
}

/// Whether a unit of the system pulls it in.
bool is_wanted(const QString &root) {
  const QDir folder(root + unit_folders.first());
  for (const QString &wants : folder.entryList({QStringLiteral("*.wants"), QStringLiteral("*.requires")}, QDir::Dirs))
    if (QFileInfo(folder.filePath(wants) + QLatin1Char('/') + unit_name).isSymLink())
      return true;
  return false;
}

} // namespace

ServiceFacts find_service(const QString &root) {
  ServiceFacts facts;
  for (const QString &folder : unit_folders) {
    const QString file = root + folder + QLatin1Char('/') + unit_name;
    if (!QFileInfo::exists(file))
      continue;
    facts.unit = file;
    break;
  }
  if (facts.unit.isEmpty())
    return facts;
  read_settings(whole_text(root, facts.unit), facts);
  facts.is_enabled = is_wanted(root);
  // systemd keeps such a link, which leads nowhere, for as long as a unit is active.
  facts.is_running = QFileInfo(root + QLatin1String("/run/systemd/units/invocation:") + unit_name).isSymLink();
  return facts;
}

QString version_in_program(const QString &file) {
  QFile program(file);
  if (!QFileInfo(file).isFile() || !program.open(QIODevice::ReadOnly))
    return {};
  // Byte by byte as Latin-1, so that the places in the text are those in the file.
  const QByteArray bytes = program.read(most_of_program);
  const QString content = QString::fromLatin1(bytes.constData(), static_cast<int>(bytes.size()));
  static const QRegularExpression version(QStringLiteral("buttondriver (\\d+\\.\\d+\\.\\d+)\\x{00}"));
  return version.match(content).captured(1);
}

} // namespace buttondriver::buttonctl
