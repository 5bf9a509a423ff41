// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/register_device.h"

namespace buttondriver::panel {

/// The panel's own FPGA, reached through the kernel's character device.
class IoctlRegisterDevice : public RegisterDevice {
public:
  int open(const char *path) override;
  int transfer(int descriptor, unsigned long request, TransferRecord &record, std::uint16_t *words) override;
};

} // namespace buttondriver::panel
