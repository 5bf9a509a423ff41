// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace buttondriver {

/// Opens the file at `path` if it is a regular one; the caller closes it. Returns -1, with the reason in errno, if it
/// cannot be opened, or is something else, which could keep its reader waiting or never end. `flags` as for ::open;
/// a file that O_CREAT makes gets the mode 0666.
inline int open_regular_file(const char *path, int flags = O_RDONLY) {
  const int descriptor = ::open(path, flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
  if (descriptor < 0)
    return -1;
  struct stat status = {};
  if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
    return descriptor;
  ::close(descriptor);
  errno = EINVAL;
  return -1;
}

} // namespace buttondriver
