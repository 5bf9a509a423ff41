// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace buttondriver {

/// Opens the file at `path` if it is a regular one. Returns none, with the reason in errno, if it cannot be opened, or
/// is something else, which could keep its reader waiting or never end. `flags` as for open(2); a file that O_CREAT
/// makes gets the mode 0666.
inline OwnedDescriptor open_regular_file(const char *path, int flags = O_RDONLY) {
  OwnedDescriptor descriptor(::open(path, flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666));
  if (!descriptor)
    return {};
  struct stat status = {};
  if (::fstat(descriptor.get(), &status) == 0 && S_ISREG(status.st_mode))
    return descriptor;
  errno = EINVAL;
  return {};
}

} // namespace buttondriver
