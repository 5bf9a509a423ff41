// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/transfer_record.h"

#include <cstdint>

namespace buttondriver::panel {

/// The boundary to the hardware. Every write to the panel and every read goes through `transfer`.
/// Called by one thread at a time: the worker, or the main thread while it holds the facade's mutex.
class RegisterDevice {
public:
  virtual ~RegisterDevice() = default;

  /// Opens the device node at `path` for reading and writing. Returns a descriptor, or -1.
  virtual int open(const char *path) = 0;

  /// Carries out one transfer. `words` are the caller's `record.count` words: a record has room for a 32-bit address
  /// only, so on a 64-bit machine they are passed beside it. Returns what `ioctl` returns: negative on failure.
  virtual int transfer(int descriptor, unsigned long request, TransferRecord &record, std::uint16_t *words) = 0;
};

/// Makes `device` the one that all transfers go to from now on; null brings back the real device.
/// The caller keeps `device` alive as long as anything may transfer. Called before panel_lib_init.
void use_register_device(RegisterDevice *device);

} // namespace buttondriver::panel
