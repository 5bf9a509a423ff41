// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/file_facts.h"
#include "buttonctl/doctor/checks/finding.h"

#include <QString>

namespace buttondriver::buttonctl {

/// Whether the panel's device node is there, under the folder `root`, and may be read and written.
Finding check_device(const QString &root, const FileLook &look);

} // namespace buttondriver::buttonctl
