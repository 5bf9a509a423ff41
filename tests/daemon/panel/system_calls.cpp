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

int usleep(useconds_t microseconds) { return system_calls::usleep ? system_calls::usleep(microseconds) : 0; }

} // extern "C"
