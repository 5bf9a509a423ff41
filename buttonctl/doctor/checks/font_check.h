// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/finding.h"
#include "buttonctl/doctor/facts/file_facts.h"
#include "files/system_paths.h"

#include <vector>

namespace buttondriver::buttonctl {

/// Whether the screens' configuration can be read and names a size, and whether there is a font of that size; the
/// second is left out when there is no size. Names the sizes that there are. `root` is the folder that the system's own
/// fonts are looked for under, empty for the system itself.
std::vector<Finding> check_configuration_and_font(const SystemPaths &paths, const QString &root, const FileLook &look);

} // namespace buttondriver::buttonctl
