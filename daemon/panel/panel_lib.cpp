// SPDX-License-Identifier: Apache-2.0
#include "panel/panel_lib.h"

#include "panel/formats/font.h"
#include "panel/registers/register_access.h"

namespace buttondriver::panel {

void panel_lib_init() {
  fpga_reg_fd = fpga_reg_open(nullptr);
  freetype_start();
}

void panel_lib_done() { freetype_end(); }

} // namespace buttondriver::panel
