// SPDX-License-Identifier: Apache-2.0
#include "system_calls.h"

#include <cstdarg>
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

// The linker gives calls of mmap to the wrapper, and calls of the wrapped one to the C library. With 64-bit sizes on a
// 32-bit machine the panel's code calls another name.
#ifdef _FILE_OFFSET_BITS
#define MMAP "mmap64"
#else
#define MMAP "mmap"
#endif
using Mmap = void *(void *wish, std::size_t bytes, int protection, int flags, int descriptor, off_t offset);
Mmap wrapped_mmap __asm__("__real_" MMAP);
Mmap wrapper_of_mmap __asm__("__wrap_" MMAP);

void *wrapper_of_mmap(void *wish, std::size_t bytes, int protection, int flags, int descriptor, off_t offset) {
  if (system_calls::mmap)
    if (void *const memory = system_calls::mmap(wish, bytes, flags))
      return memory;
  return wrapped_mmap(wish, bytes, protection, flags, descriptor, offset);
}

int usleep(useconds_t microseconds) { return system_calls::usleep ? system_calls::usleep(microseconds) : 0; }

} // extern "C"
