// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/leds.h"
#include "panel/panel_lib.h"
#include "panel/registers/register_access.h"
#include "support/captured_log.h"
#include "support/device/recording_device.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace buttondriver::panel {

using Lines = std::vector<std::string>;

/// The whole glass as the window, on all controllers.
inline const Lines whole_window = {"w 0a0e 1 0000", "w 0a0e 1 4400", "w 0a0f 1 8304",
                                   "w 0a0e 1 0000", "w 0a0e 1 4500", "w 0a0f 1 8001"};

inline Lines operator+(Lines first, const Lines &second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

/// What `action` writes to standard output. Expectations do not belong inside: their failures would be swallowed.
template <typename Action> std::string output_of(Action action) {
  test::CapturedOutput output;
  action();
  return output.take();
}

/// The panel layer started on a device that remembers every transfer.
class PanelTest : public testing::Test {
protected:
  PanelTest() {
    toggle_indicator_bits = 0;
    panel_lib_init();
  }
  ~PanelTest() override {
    panel_lib_done();
    fpga_reg_fd = -1;
  }

  test::RecordingDevice device;
};

} // namespace buttondriver::panel
