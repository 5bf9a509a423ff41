// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QString>

#include <optional>

namespace buttondriver::simulator {

/// Writes the ports that are there to `file`, all at once: whoever finds the file finds both. A line "daemon=3003" and
/// a line "http=8080"; each is left out where there is no such port.
Outcome<Done> write_ports(const QString &file, std::optional<quint16> daemon, std::optional<quint16> http);

/// Removes the file of an earlier run, so that nobody takes its ports for those of this one. What is no plain file
/// stays.
void remove_ports(const QString &file);

} // namespace buttondriver::simulator
