// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/configuration/configuration.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>

namespace buttondriver::bridge {

/// No file is larger.
inline constexpr int most_configuration_bytes = 4 * 1024 * 1024;

/// Reads `text` as the configuration file `file`, whose name is for failures only: "FILE:LINE: what is wrong", one line
/// for each thing that is wrong, some fifty at most. Relative names of files in it count from the folder of `file`.
/// Reads the password file, and looks whether the others are there. A file with a secret must not be open to everybody.
Outcome<Configuration> read_configuration(const QByteArray &text, const QString &file);
/// As it lies on the disk.
Outcome<Configuration> read_configuration_file(const QString &file);

} // namespace buttondriver::bridge
