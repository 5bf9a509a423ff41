// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>

/// This test program has ioctl and usleep of its own, in front of those of the C library, and the linker gives it one
/// of mmap, because the loader and ThreadSanitizer call the library's before this program is ready. They call what
/// stands here. While nothing does, ioctl and mmap call the kernel, and usleep returns 0 at once.
namespace buttondriver::panel::system_calls {

inline std::function<int(int descriptor, unsigned long request, void *argument)> ioctl;
/// Asked before the kernel; what is not null is returned at once.
inline std::function<void *(void *wish, std::size_t bytes, int flags)> mmap;
inline std::function<int(unsigned microseconds)> usleep;

/// Removes what stands there when it goes.
struct Restore {
  Restore() = default;
  ~Restore() {
    ioctl = nullptr;
    mmap = nullptr;
    usleep = nullptr;
  }
  Restore(const Restore &) = delete;
  Restore &operator=(const Restore &) = delete;
};

} // namespace buttondriver::panel::system_calls
