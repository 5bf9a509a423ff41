// SPDX-License-Identifier: Apache-2.0
#include "system_calls.h"

#include <cstdarg>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace system_calls = buttondriver::panel::system_calls;

extern "C" {

int ioctl(int descriptor, unsigned long request, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, request);
  void *const argument = va_arg(arguments, void *);
  va_end(arguments);
  if (system_calls::ioctl)
    return system_calls::ioctl(descriptor, request, argument);
  return static_cast<int>(::syscall(SYS_ioctl, descriptor, request, argument));
}

void *mmap(void *wish, std::size_t bytes, int protection, int flags, int descriptor, off_t offset) noexcept {
  if (system_calls::mmap)
    if (void *const memory = system_calls::mmap(wish, bytes, flags))
      return memory;
#ifdef SYS_mmap2
  return reinterpret_cast<void *>(::syscall(SYS_mmap2, wish, bytes, protection, flags, descriptor, offset / 4096));
#else
  return reinterpret_cast<void *>(::syscall(SYS_mmap, wish, bytes, protection, flags, descriptor, offset));
#endif
}

int usleep(useconds_t microseconds) { return system_calls::usleep ? system_calls::usleep(microseconds) : 0; }

} // extern "C"
