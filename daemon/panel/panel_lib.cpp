// SPDX-License-Identifier: Apache-2.0
#include "panel/panel_lib.h"

#include "panel/formats/font.h"
#include "panel/registers/register_access.h"

namespace buttondriver::panel {

bool panel_lib_initialised = false;

void panel_lib_init() {
  fpga_reg_fd = fpga_reg_open(nullptr);
  freetype_start();
  panel_lib_initialised = true;
}

void panel_lib_done() { freetype_end(); }

} // namespace buttondriver::panel
