// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace buttondriver::buttonctl {

/// What is known of the daemon as a service of systemd.
struct ServiceFacts {
  QString unit;            ///< the unit's file; empty when it is not installed
  QString program;         ///< that it starts, as the unit has it; empty when it names none
  int port = 0;            ///< that it gives the daemon by BUTTONDRIVER_PORT; 0 when it does not
  bool is_enabled = false; ///< something starts it: the device, or the system's start
  bool is_running = false;
};

/// Reads the unit buttondriver.service with its drop-ins, where systemd looks for them under the folder `root`, which
/// is empty for the system's own root.
ServiceFacts find_service(const QString &root);

/// The version of the daemon's program, such as "0.1.0", as it stands in the file; empty when there is none, or the
/// file cannot be read.
QString version_in_program(const QString &file);

} // namespace buttondriver::buttonctl
