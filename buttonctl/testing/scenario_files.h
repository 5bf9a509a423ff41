// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QString>
#include <QStringList>

namespace buttondriver::buttonctl {

/// The files among `places` in their order, and in place of a folder all files in it and below that end with
/// ".scenario", by name. A file that comes twice is taken once. A place that is not there and a folder without
/// scenarios are failures.
Outcome<QStringList> scenario_files(const QStringList &places);

/// A name for a folder for each of `files`, made of its path; all different.
QStringList folder_names(const QStringList &files);

} // namespace buttondriver::buttonctl
