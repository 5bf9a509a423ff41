// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/request.h"
#include "buttonctl/doctor/file_facts.h"
#include "buttonctl/doctor/finding.h"

#include <QString>

#include <vector>

namespace buttondriver::buttonctl {

/// All checks that the request asks for. Files and the device are left out when the daemon is on another machine.
std::vector<Finding> examine(const Request &request, const FileLook &look);

/// One line: "ok" or "FAULT", and what was found; below a fault the line that mends it.
QString shown(const Finding &finding);

/// `buttonctl doctor`. Returns the exit status.
int run_doctor(const Request &request);

} // namespace buttondriver::buttonctl
