// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/file_facts.h"
#include "buttonctl/doctor/checks/finding.h"
#include "buttonctl/session/endpoint.h"

#include <QString>

#include <vector>

namespace buttondriver::buttonctl {

/// What is to be checked.
struct Examination {
  QString root;     ///< folder that the fixed paths lie under; empty for the system's own root
  bool skip_device; ///< there is no device to look for
  Endpoint endpoint;
};

/// All checks, in order. Files and the device are left out when the daemon is on another machine.
std::vector<Finding> examine(const Examination &examination, const FileLook &look);

/// One line: "ok" or "FAULT", and what was found; below a fault the line that mends it.
QString shown(const Finding &finding);

} // namespace buttondriver::buttonctl
