// SPDX-License-Identifier: Apache-2.0
#include "panel/registers/ioctl_register_device.h"

#include <fcntl.h>
#include <sys/ioctl.h>

namespace buttondriver::panel {

int IoctlRegisterDevice::open(const char *path) { return ::open(path, O_RDWR | O_CLOEXEC); }

int IoctlRegisterDevice::transfer(int descriptor, unsigned long request, TransferRecord &record, std::uint16_t *) {
  return ::ioctl(descriptor, request, &record);
}

} // namespace buttondriver::panel
