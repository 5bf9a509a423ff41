// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/finding.h"
#include "buttonctl/doctor/facts/file_facts.h"

#include <QString>

namespace buttondriver::buttonctl {

/// Whether the panel's device node is there, under the folder `root`, and may be read and written. `user` is whom
/// `look` asks for, empty for the user of this process.
Finding check_device(const QString &root, const QString &user, const FileLook &look);

} // namespace buttondriver::buttonctl
