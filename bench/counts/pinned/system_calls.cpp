// SPDX-License-Identifier: Apache-2.0
// Counts what the daemon asks of the kernel.

#include "counts/pinned/next_function.h"
#include "counts/pinned/state.h"

#include <linux/futex.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

using namespace buttondriver::counts;

namespace {

Call kind_of_write(int descriptor) { return descriptor == 1 || descriptor == 2 ? Call::log_write : Call::send; }

} // namespace

#define COUNTED(call, result, function, parameters, ...)                                                               \
  BUTTONDRIVER_IN_FRONT_OF(result, function, BUTTONDRIVER_PARAMETERS parameters) {                                     \
    using Function = result parameters;                                                                                \
    static Function *const next = next_function<Function>(#function);                                                  \
    count(call);                                                                                                       \
    return next(__VA_ARGS__);                                                                                          \
  }
#define BUTTONDRIVER_PARAMETERS(...) __VA_ARGS__

COUNTED(kind_of_write(descriptor), ssize_t, write, (int descriptor, const void *bytes, std::size_t size), descriptor,
        bytes, size)
COUNTED(kind_of_write(descriptor), ssize_t, writev, (int descriptor, const iovec *pieces, int number), descriptor,
        pieces, number)
COUNTED(kind_of_write(descriptor), ssize_t, send, (int descriptor, const void *bytes, std::size_t size, int flags),
        descriptor, bytes, size, flags)
COUNTED(kind_of_write(descriptor), ssize_t, sendmsg, (int descriptor, const msghdr *message, int flags), descriptor,
        message, flags)
COUNTED(Call::read, ssize_t, read, (int descriptor, void *bytes, std::size_t size), descriptor, bytes, size)
COUNTED(Call::read, ssize_t, recv, (int descriptor, void *bytes, std::size_t size, int flags), descriptor, bytes, size,
        flags)
COUNTED(Call::read, ssize_t, recvmsg, (int descriptor, msghdr *message, int flags), descriptor, message, flags)

// Qt asks for futexes in this way. An argument that the caller left out is passed on as whatever is in its place.
BUTTONDRIVER_IN_FRONT_OF(long, syscall, long number, long a, long b, long c, long d, long e, long f) {
  using Function = long(long, long, long, long, long, long, long);
  static Function *const next = next_function<Function>("syscall");
  if (number != SYS_futex)
    count(Call::other);
  else if ((b & FUTEX_PRIVATE_FLAG) != 0)
    count(Call::futex); // those of this library are shared with the program
  return next(number, a, b, c, d, e, f);
}
