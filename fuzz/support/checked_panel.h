// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/register_device.h"
#include "simulator/device/virtual_panel.h"

#include <array>
#include <cstdint>

namespace buttondriver::fuzz {

/// The virtual panel, in place of the real device while it lives. It ends the program at the first transfer that the
/// daemon must never make: one that no device would accept, one of more words than a transfer can count, a read, or one
/// to a register that the panel does not have.
class CheckedPanel : public panel::RegisterDevice {
public:
  CheckedPanel();
  ~CheckedPanel() override;

  int open(const char *path) override;
  int transfer(int descriptor, unsigned long request, panel::TransferRecord &record, std::uint16_t *words) override;

  /// Every drawing leaves the whole glass as the window of all three screens. Called when no work is under way.
  void require_whole_windows() const;

private:
  /// What one screen's controller was told of its window.
  struct Controller {
    std::uint16_t index = 0;
    std::uint16_t columns = 0;
    std::uint16_t rows = 0;
  };

  void follow(unsigned port, std::uint16_t word);

  simulator::VirtualPanel _panel;
  std::array<Controller, dimensions::screen_count> _controllers;
};

} // namespace buttondriver::fuzz
