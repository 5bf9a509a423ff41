// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/service_check.h"

#include <QFileInfo>

namespace buttondriver::buttonctl {

namespace {

const QString program_name = QStringLiteral("buttondriver");

/// Empty when there is none.
QString find_program(const ServiceFacts &service, const QString &root, const QStringList &search_path) {
  if (service.program.startsWith(QLatin1Char('/')))
    return root + service.program;
  for (const QString &folder : search_path) {
    const QFileInfo file(root + folder + QLatin1Char('/') + program_name);
    if (folder.startsWith(QLatin1Char('/')) && file.isFile() && file.isExecutable())
      return file.filePath();
  }
  return {};
}

} // namespace

Finding check_service(const ServiceFacts &service) {
  const QString name = QStringLiteral("service");
  if (service.unit.isEmpty())
    return note(name, QStringLiteral("there is no unit buttondriver.service"));
  const QString state =
      QStringLiteral("%1, %2 and %3")
          .arg(service.unit, service.is_running ? QLatin1String("running") : QLatin1String("not running"),
               service.is_enabled ? QLatin1String("enabled") : QLatin1String("not enabled"));
  if (service.is_running && service.is_enabled)
    return {name, state, {}};
  return note(name, state);
}

Finding check_program(const ServiceFacts &service, const QString &root, const QStringList &search_path,
                      const QString &own_version) {
  const QString name = QStringLiteral("program");
  const QString file = find_program(service, root, search_path);
  if (file.isEmpty())
    return note(name, QStringLiteral("there is no buttondriver in the folders of PATH"));
  if (!QFileInfo(file).isFile())
    return {name, QStringLiteral("%1 is missing, which the service starts").arg(file),
            QStringLiteral("systemctl cat buttondriver    # ExecStart= names the program")};
  const QString version = version_in_program(file);
  if (version.isEmpty())
    return note(name, QStringLiteral("%1 does not tell its version").arg(file));
  if (version != own_version)
    return note(name, QStringLiteral("%1 is version %2, and buttonctl is %3").arg(file, version, own_version));
  return {name, QStringLiteral("%1 is version %2, as buttonctl is").arg(file, version), {}};
}

} // namespace buttondriver::buttonctl
