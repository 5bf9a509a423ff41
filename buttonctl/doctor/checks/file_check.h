// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/finding.h"
#include "buttonctl/doctor/facts/file_facts.h"

#include <QString>

#include <optional>

namespace buttondriver::buttonctl {

/// Why the file at `path`, of which `facts` were found, cannot be read: it may not be looked at, is no regular file, or
/// its mode or that of a folder forbids it. Nothing when it can, and nothing when it is missing, which is not always a
/// fault. `name` is the check's.
std::optional<Finding> fault_of_file(const QString &name, const QString &path, const FileFacts &facts);

/// For a folder above `path` that may not be entered: by this process, or by the account that is asked about.
std::optional<Finding> fault_of_way(const QString &name, const QString &path, const FileFacts &facts);

} // namespace buttondriver::buttonctl
