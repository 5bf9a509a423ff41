// SPDX-License-Identifier: Apache-2.0
#include "panel/registers/ioctl_register_device.h"

#include "logging/standard_output.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>

// Declared here, because <sys/ioctl.h> turns it into another function in 32-bit builds with 64-bit time, which whoever
// stands in for the device by a function of this name would miss.
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept;

namespace buttondriver::panel {

int IoctlRegisterDevice::open(const char *path) { return ::open(path, O_RDWR | O_CLOEXEC); }

int IoctlRegisterDevice::transfer(int descriptor, unsigned long request, TransferRecord &record, std::uint16_t *words) {
  if (record.count > 1 && !has_low_address(words + record.count - 1))
    return transferMoved(descriptor, request, record, words);
  return ::ioctl(descriptor, request, &record);
}

int IoctlRegisterDevice::transferMoved(int descriptor, unsigned long request, TransferRecord &record,
                                       std::uint16_t *words) {
  std::uint16_t *const moved = _low_memory.words(record.count);
  if (!moved) {
    if (!_is_lack_printed)
      print("buttondriver: no memory below 4 GiB for a transfer of %u words\n", record.count);
    _is_lack_printed = true;
    errno = ENOMEM;
    return -1;
  }
  std::copy_n(words, record.count, moved);
  record.value = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(moved));
  const std::uint32_t count = record.count; // the device has the record
  const int result = ::ioctl(descriptor, request, &record);
  std::copy_n(moved, count, words);
  return result;
}

} // namespace buttondriver::panel
