// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/doctor.h"

#include "buttonctl/doctor/daemon_check.h"
#include "buttonctl/doctor/device_check.h"
#include "buttonctl/doctor/font_check.h"
#include "buttonctl/doctor/level_check.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

#include <QDir>
#include <QHostAddress>

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

bool is_this_machine(const QString &host) {
  return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

} // namespace

std::vector<Finding> examine(const Request &request, const FileLook &look) {
  std::vector<Finding> findings;
  if (is_this_machine(request.endpoint.host)) {
    const QString root = request.root.isEmpty() ? QString() : QDir(request.root).absolutePath();
    const SystemPaths paths = SystemPaths::under(root.toStdString());
    findings = check_configuration_and_font(paths, look);
    findings.push_back(check_levels(paths, look));
    if (!request.is_virtual)
      findings.push_back(check_device(root, look));
  }
  findings.push_back(check_daemon(request.endpoint));
  return findings;
}

QString shown(const Finding &finding) {
  if (!finding.is_fault())
    return QStringLiteral("ok     %1: %2").arg(finding.name, as_one_line(finding.text));
  return QStringLiteral("FAULT  %1: %2\n       fix: %3")
      .arg(finding.name, as_one_line(finding.text), as_one_line(finding.fix));
}

int run_doctor(const Request &request) {
  const std::vector<Finding> findings = examine(request, look_at_file);
  for (const Finding &finding : findings)
    print_line(shown(finding));
  const bool is_ill =
      std::any_of(findings.begin(), findings.end(), [](const Finding &finding) { return finding.is_fault(); });
  return is_ill ? exit_unreachable : exit_done;
}

} // namespace buttondriver::buttonctl
