// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/finding.h"
#include "buttonctl/doctor/facts/file_facts.h"
#include "buttonctl/session/endpoint.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace buttondriver::buttonctl {

/// What is to be checked.
struct Examination {
  QString root;    ///< folder that the fixed paths lie under; empty for the system's own root
  bool is_virtual; ///< the panel is a program: there is no device and no service to look for
  Endpoint endpoint;
  QString user;            ///< whose permissions count; empty for those of this process
  QStringList search_path; ///< folders that a program without a folder is looked for in, each under the root as well
  QString version;         ///< of this program, to be compared with the daemon's
};

/// How to look for the user of the examination; fails when there is no such user.
Outcome<FileLook> look_of(const Examination &examination);

/// All checks, in order. Files, device and service are left out when the daemon is on another machine.
std::vector<Finding> examine(const Examination &examination, const FileLook &look);

/// One line: "ok", "note" or "FAULT", and what was found; below a fault the line that mends it.
QString shown(const Finding &finding);

} // namespace buttondriver::buttonctl
