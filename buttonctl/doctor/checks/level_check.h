// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/finding.h"
#include "buttonctl/doctor/facts/file_facts.h"
#include "files/system_paths.h"

namespace buttondriver::buttonctl {

/// Whether the level file, if there is one, can be read and holds nothing that the daemon cannot use.
Finding check_levels(const SystemPaths &paths, const FileLook &look);

} // namespace buttondriver::buttonctl
