// SPDX-License-Identifier: Apache-2.0
// Linked into tests that start programs and are emulated themselves. QProcess starts them with a flag of clone(2) that
// qemu-user refuses, unless the kernel says that it does not know it. So this says so.

#include <cerrno>
#include <cstdarg>
#include <dlfcn.h>
#include <sys/syscall.h>
#include <sys/wait.h>

/// In front of the C library's.
extern "C" long syscall(long number, ...) noexcept {
  long arguments[6];
  std::va_list list;
  va_start(list, number);
  for (long &argument : arguments) // those that the caller left out are passed on as whatever is in their place
    argument = va_arg(list, long);
  va_end(list);
  constexpr long by_descriptor = 3; // P_PIDFD
  if (number == SYS_waitid && arguments[0] == by_descriptor) {
    errno = EINVAL;
    return -1;
  }
  using Function = long (*)(long, ...);
  static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "syscall"));
  return next(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4], arguments[5]);
}
