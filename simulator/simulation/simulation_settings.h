// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

namespace buttondriver::simulator {

/// What a simulation is made with.
struct SimulationSettings {
  QString device_socket; ///< where another program drives the panel; empty: a daemon in this program does
  QString root;          ///< folder that the fixed paths lie under; empty for the ready-made one
  /// The font of the screens: "10x20" for one of the root's, with a daemon in this program instead of the configured
  /// one. Where another program drives the panel, also a file: the font that it uses. Empty: not chosen here.
  QString font;
  int intensity_percent = 100;  ///< of the screens, after the start and after a reset; a daemon in this program sets it
  QString snapshot_file;        ///< empty: no picture
  QString record_file;          ///< empty: no recording
  bool keeps_traffic = false;   ///< whether messages, their texts and log lines are kept, for a page that shows them
  QStringList daemon_arguments; ///< as the daemon itself would get them: program, map file, address, port
};

} // namespace buttondriver::simulator
