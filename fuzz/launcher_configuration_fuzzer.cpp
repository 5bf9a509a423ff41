// SPDX-License-Identifier: Apache-2.0
// Launcher configurations: the whole input is the file.
#include "fuzz/fuzz_target.h"
#include "fuzz/support/facade_rig.h"
#include "fuzz/support/input.h"

#include <QString>

#include <cstdio>

namespace buttondriver::fuzz {

namespace {

void run(FacadeRig &rig, Input input) {
  // A name of its own each time, because QSettings remembers what it read from a name.
  static std::uint64_t files = 0;
  const std::vector<std::uint8_t> content = input.rest();
  const std::string file = rig.folder().write(std::to_string(++files), std::string(content.begin(), content.end()));
  rig.fpga().check_font_settings(QString::fromStdString(file));
  std::remove(file.c_str());
  rig.fpga().textLine(0, 0, "A", true);
  rig.settle();
  rig.panel().require_whole_windows();
  // The sizes are remembered as well.
  rig.fpga().check_font_settings(QString::fromStdString(rig.paths().launcher_configuration));
}

} // namespace

} // namespace buttondriver::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static buttondriver::fuzz::FacadeRig rig;
  buttondriver::fuzz::run(rig, {data, size});
  return 0;
}
