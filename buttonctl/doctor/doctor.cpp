// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/doctor.h"

#include "buttonctl/doctor/checks/daemon_check.h"
#include "buttonctl/doctor/checks/device_check.h"
#include "buttonctl/doctor/checks/font_check.h"
#include "buttonctl/doctor/checks/level_check.h"
#include "buttonctl/session/console.h"

#include <QDir>
#include <QHostAddress>

namespace buttondriver::buttonctl {

namespace {

bool is_this_machine(const QString &host) {
  return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

} // namespace

std::vector<Finding> examine(const Examination &examination, const FileLook &look) {
  std::vector<Finding> findings;
  if (is_this_machine(examination.endpoint.host)) {
    const QString root = examination.root.isEmpty() ? QString() : QDir(examination.root).absolutePath();
    const SystemPaths paths = SystemPaths::under(root.toStdString());
    findings = check_configuration_and_font(paths, look);
    findings.push_back(check_levels(paths, look));
    if (!examination.skip_device)
      findings.push_back(check_device(root, look));
  }
  findings.push_back(check_daemon(examination.endpoint));
  return findings;
}

QString shown(const Finding &finding) {
  if (!finding.isFault())
    return QStringLiteral("ok     %1: %2").arg(finding.name, as_one_line(finding.text));
  return QStringLiteral("FAULT  %1: %2\n       fix: %3")
      .arg(finding.name, as_one_line(finding.text), as_one_line(finding.fix));
}

} // namespace buttondriver::buttonctl
