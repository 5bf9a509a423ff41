// SPDX-License-Identifier: Apache-2.0
// Preloaded into a program: functions of the system that reach the panel's device reach a virtual panel instead, where
// the environment names one. Everything else goes on to the system.

#include "panel/registers/registers.h"
#include "panel/registers/transfer_record.h"
#include "simulator/device_link/device_protocol.h"
#include "simulator/stand_in/device_connection.h"

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>

namespace {

using namespace buttondriver;
namespace stand_in = simulator::stand_in;

/// The socket of the panel that an open of `path` is meant for; null when it is not meant for one.
const char *panel_for(const char *path) {
  if (!path || std::strcmp(path, panel::register_device_path) != 0)
    return nullptr;
  const char *socket = std::getenv(simulator::device_protocol::socket_variable);
  return socket && *socket != '\0' ? socket : nullptr;
}

/// Calls the function that one of this library stands in front of.
template <class Result, class... Arguments> Result pass_on(const char *name, Arguments... arguments) {
  using Function = Result (*)(Arguments...);
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name))(arguments...);
}

int pass_on_ioctl(const char *name, int descriptor, unsigned long request, void *argument) {
  return pass_on<int>(name, descriptor, request, argument);
}

/// Whether `request` is one that only the device understands: of its type, with an argument of the record's size.
bool is_for_device(unsigned long request) { return (request & 0xFFFFFF00UL) == panel::short_form_request; }

int carry_out(const char *name, int descriptor, unsigned long request, void *argument) {
  // A caller may have taken the request for a negative number.
  const unsigned long code = request & 0xFFFFFFFFUL;
  if (!is_for_device(code) || !argument || !stand_in::is_device(descriptor))
    return pass_on_ioctl(name, descriptor, request, argument);
  return stand_in::transfer(descriptor, code, *static_cast<panel::TransferRecord *>(argument));
}

} // namespace

// Stands in front of a function of the system. It has a name of its own in this file: how the system's headers declare
// it, or as which other one, depends on the machine. An argument that the caller left out is passed on as whatever is
// in its place; nobody looks at it.
#define BUTTONDRIVER_STAND_IN(function, parameters)                                                                    \
  extern "C" __attribute__((visibility("default"))) int stand_in_##function parameters __asm__(#function);             \
  int stand_in_##function parameters

#define BUTTONDRIVER_STAND_IN_OPEN(function, parameters, ...)                                                          \
  BUTTONDRIVER_STAND_IN(function, parameters) {                                                                        \
    if (const char *socket = panel_for(path))                                                                          \
      return stand_in::open_device(socket, (flags & O_CLOEXEC) != 0);                                                  \
    return pass_on<int>(#function, __VA_ARGS__);                                                                       \
  }

BUTTONDRIVER_STAND_IN_OPEN(open, (const char *path, int flags, unsigned mode), path, flags, mode)
BUTTONDRIVER_STAND_IN_OPEN(open64, (const char *path, int flags, unsigned mode), path, flags, mode)
BUTTONDRIVER_STAND_IN_OPEN(__open_2, (const char *path, int flags), path, flags)
BUTTONDRIVER_STAND_IN_OPEN(__open64_2, (const char *path, int flags), path, flags)
BUTTONDRIVER_STAND_IN_OPEN(openat, (int folder, const char *path, int flags, unsigned mode), folder, path, flags, mode)
BUTTONDRIVER_STAND_IN_OPEN(openat64, (int folder, const char *path, int flags, unsigned mode), folder, path, flags,
                           mode)
BUTTONDRIVER_STAND_IN_OPEN(__openat_2, (int folder, const char *path, int flags), folder, path, flags)
BUTTONDRIVER_STAND_IN_OPEN(__openat64_2, (int folder, const char *path, int flags), folder, path, flags)

BUTTONDRIVER_STAND_IN(ioctl, (int descriptor, unsigned long request, void *argument)) {
  return carry_out("ioctl", descriptor, request, argument);
}

// With 64-bit times on a 32-bit machine.
BUTTONDRIVER_STAND_IN(__ioctl_time64, (int descriptor, unsigned long request, void *argument)) {
  return carry_out("__ioctl_time64", descriptor, request, argument);
}
