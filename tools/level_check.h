#pragma once

#include "paths/system_paths.h"
#include "tools/file_facts.h"
#include "tools/finding.h"

namespace buttondriver::buttonctl {

/// Whether the level file can be read and holds nothing that the daemon cannot use.
Finding check_levels(const SystemPaths &paths, const FileLook &look);

} // namespace buttondriver::buttonctl
