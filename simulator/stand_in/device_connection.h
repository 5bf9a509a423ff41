// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/transfer_record.h"

/// The connection to a virtual panel that stands in for the device. No memory is taken, and nothing of the C++ library
/// is needed. Any thread may call; transfers wait for each other.
namespace buttondriver::simulator::stand_in {

/// Connects to the panel whose socket is at `path`. Returns a descriptor, which closes as any other, or -1 with errno:
/// ENOENT when no panel is there, EBUSY when another driver is connected to it, EIO when it does not answer as it
/// should. Why is also told on standard error.
int open_device(const char *path, bool closes_on_exec);

/// Whether `descriptor` is the one that open_device() has returned last, or a duplicate of it.
bool is_device(int descriptor);

/// Has the panel carry out one transfer, as ioctl(2) does with the device: returns its result, with errno when that is
/// negative. When the panel has gone or does not answer, this transfer and all later ones fail with EIO.
int transfer(int descriptor, unsigned long code, panel::TransferRecord &record);

} // namespace buttondriver::simulator::stand_in
