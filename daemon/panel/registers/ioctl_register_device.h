// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/low_memory.h"
#include "panel/registers/register_device.h"

namespace buttondriver::panel {

/// The panel's own FPGA, reached through the kernel's character device.
///
/// A record has room for a 32-bit address. On a 64-bit machine words whose address is longer are moved for the
/// transfer: they are copied to memory that 32 bits address, and back afterwards. Without such memory a transfer of
/// more than one word is not tried; the first time that is printed on standard output.
class IoctlRegisterDevice : public RegisterDevice {
public:
  int open(const char *path) override;
  int transfer(int descriptor, unsigned long request, TransferRecord &record, std::uint16_t *words) override;

private:
  int transferMoved(int descriptor, unsigned long request, TransferRecord &record, std::uint16_t *words);

  LowMemory _low_memory;
  bool _is_lack_printed = false;
};

} // namespace buttondriver::panel
