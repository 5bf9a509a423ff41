// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "yardsticks/measure/scale.h"
#include "yardsticks/report/comparison.h"

#include <vector>

namespace buttondriver::yardsticks {

// Each measures one group; all throw std::runtime_error when a program does not do its part.

/// The daemon with an instant device, and servers that only take frames apart.
Group measure_messages(const Setting &setting);
/// A daemon with many connections, and one that has only the one that sends.
Group measure_connections(const Setting &setting);
/// The panel library's text and pictures, and Qt's and FreeType's. Needs a QGuiApplication.
Group measure_drawing(const Setting &setting);
/// Memory and start of the daemon and of a bare server with Qt.
Group measure_processes(const Setting &setting);
/// The daemon and LCDd.
Group measure_lcdd(const Setting &setting);

/// A group and its name on the command line.
struct GroupKind {
  const char *name;
  Group (*measure)(const Setting &setting);
};
/// In the order of the page.
const std::vector<GroupKind> &all_group_kinds();

} // namespace buttondriver::yardsticks
