// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/system_paths.h"
#include "fpga/fpga.h"
#include "fuzz/support/checked_panel.h"
#include "tests/support/temporary_folder.h"

#include <QCoreApplication>

namespace buttondriver::fuzz {

/// A facade on a checked panel, with an application object, with files of its own and with the font 8x16 in use. Made
/// once a process; all logs are thrown away from then on.
class FacadeRig {
public:
  FacadeRig();

  FPGA &fpga() { return _fpga; }
  const SystemPaths &paths() const { return _paths; }
  const test::TemporaryFolder &folder() const { return _folder; }
  CheckedPanel &panel() { return _panel; }

  /// Waits until all that was queued so far is done.
  void settle();

private:
  static SystemPaths make_files(const test::TemporaryFolder &folder);

  int _argument_count = 0;
  QCoreApplication _application;
  test::TemporaryFolder _folder;
  SystemPaths _paths;
  CheckedPanel _panel;
  FPGA _fpga;
};

} // namespace buttondriver::fuzz
