// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/file_facts.h"
#include "buttonctl/doctor/checks/finding.h"
#include "files/system_paths.h"

#include <vector>

namespace buttondriver::buttonctl {

/// Whether the screens' configuration can be read and names a size, and whether there is a font of that size; the
/// second is left out when there is no size.
std::vector<Finding> check_configuration_and_font(const SystemPaths &paths, const FileLook &look);

} // namespace buttondriver::buttonctl
