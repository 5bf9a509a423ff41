// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cerrno>
#include <unistd.h>

namespace buttondriver {

/// Owns a file descriptor and closes it at its end; -1 stands for none. Closing leaves errno as it is, so that the
/// reason of an earlier failure is still there. Not safe to share between threads.
class OwnedDescriptor {
public:
  OwnedDescriptor() = default;
  explicit OwnedDescriptor(int descriptor) : _descriptor(descriptor) {}
  ~OwnedDescriptor() { reset(); }
  OwnedDescriptor(OwnedDescriptor &&other) noexcept : _descriptor(other.release()) {}
  OwnedDescriptor &operator=(OwnedDescriptor &&other) noexcept {
    reset(other.release());
    return *this;
  }
  OwnedDescriptor(const OwnedDescriptor &) = delete;
  OwnedDescriptor &operator=(const OwnedDescriptor &) = delete;

  explicit operator bool() const { return _descriptor >= 0; }
  /// -1 for none; the descriptor stays owned.
  int get() const { return _descriptor; }

  /// Hands the descriptor over to the caller.
  int release() {
    const int descriptor = _descriptor;
    _descriptor = -1;
    return descriptor;
  }

  /// Closes the descriptor, if there is one, and owns `descriptor` from now on.
  void reset(int descriptor = -1) {
    if (_descriptor >= 0) {
      const int earlier_errno = errno;
      ::close(_descriptor);
      errno = earlier_errno;
    }
    _descriptor = descriptor;
  }

private:
  int _descriptor = -1;
};

} // namespace buttondriver
