// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/file_facts.h"
#include "buttonctl/doctor/checks/finding.h"
#include "files/system_paths.h"

namespace buttondriver::buttonctl {

/// Whether the level file can be read and holds nothing that the daemon cannot use.
Finding check_levels(const SystemPaths &paths, const FileLook &look);

} // namespace buttondriver::buttonctl
