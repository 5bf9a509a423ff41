// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/doctor.h"

#include "buttonctl/doctor/checks/daemon_check.h"
#include "buttonctl/doctor/checks/device_check.h"
#include "buttonctl/doctor/checks/font_check.h"
#include "buttonctl/doctor/checks/level_check.h"
#include "buttonctl/doctor/checks/service_check.h"
#include "buttonctl/doctor/facts/account.h"
#include "buttonctl/session/console.h"

#include <QDir>
#include <QHostAddress>

#include <utility>

namespace buttondriver::buttonctl {

namespace {

bool is_this_machine(const QString &host) {
  return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

QString root_of(const Examination &examination) {
  return examination.root.isEmpty() ? QString() : QDir(examination.root).absolutePath();
}

} // namespace

Outcome<FileLook> look_of(const Examination &examination) {
  if (examination.user.isEmpty())
    return FileLook(look_at_file);
  Outcome<Account> account = find_account(root_of(examination), examination.user);
  if (!account)
    return account.failure();
  return FileLook([account = std::move(*account)](const QString &path) { return look_at_file_as(account, path); });
}

std::vector<Finding> examine(const Examination &examination, const FileLook &look) {
  if (!is_this_machine(examination.endpoint.host))
    return {note(QStringLiteral("machine"),
                 QStringLiteral("%1 is another machine, or another name of this one: for its files, its device and its "
                                "service, run there: buttonctl doctor --host 127.0.0.1")
                     .arg(examination.endpoint.host)),
            check_daemon_elsewhere(examination.endpoint)};
  const QString root = root_of(examination);
  const SystemPaths paths = SystemPaths::under(root.toStdString());
  std::vector<Finding> findings = check_configuration_and_font(paths, root, look);
  findings.push_back(check_levels(paths, look));
  if (examination.is_virtual) {
    findings.push_back(check_virtual_daemon(examination.endpoint, root));
    return findings;
  }
  findings.push_back(check_device(root, examination.user, look));
  const ServiceFacts service = find_service(root);
  findings.push_back(check_service(service));
  findings.push_back(check_program(service, root, examination.search_path, examination.version));
  findings.push_back(check_daemon(examination.endpoint, service));
  return findings;
}

QString shown(const Finding &finding) {
  const QString name = QStringLiteral("%1: %2").arg(finding.name, as_one_line(finding.text));
  if (finding.isFault())
    return QStringLiteral("FAULT  %1\n       fix: %2").arg(name, as_one_line(finding.fix));
  return (finding.is_note ? QLatin1String("note   ") : QLatin1String("ok     ")) + name;
}

} // namespace buttondriver::buttonctl
