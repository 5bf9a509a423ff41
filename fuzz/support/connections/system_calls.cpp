// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/connections/system_calls.h"

#include <algorithm>
#include <cerrno>
#include <dlfcn.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace buttondriver::fuzz {

SystemCalls system_calls;

void acknowledge_at_once(int descriptor) {
  const int at_once = 1;
  ::setsockopt(descriptor, IPPROTO_TCP, TCP_QUICKACK, &at_once, sizeof at_once);
}

namespace {

/// Both kinds of addresses have it at the same place.
std::uint16_t port_of(const sockaddr_storage &address) {
  return ntohs(reinterpret_cast<const sockaddr_in &>(address).sin_port);
}

/// Before one of the server's ends is closed: whether by a reset.
void choose_the_end(int descriptor) {
  sockaddr_storage address{};
  socklen_t size = sizeof address;
  int on_its_way = 0;
  if (system_calls.server_port == 0 || ::getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size) != 0 ||
      port_of(address) != system_calls.server_port || ::ioctl(descriptor, TIOCOUTQ, &on_its_way) != 0)
    return;
  const linger no_time{on_its_way == 0 ? 1 : 0, 0};
  ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &no_time, sizeof no_time);
}

} // namespace

} // namespace buttondriver::fuzz

using buttondriver::fuzz::acknowledge_at_once;
using buttondriver::fuzz::system_calls;

extern "C" int accept4(int descriptor, sockaddr *, socklen_t *, int flags) {
  using Function = int (*)(int, sockaddr *, socklen_t *, int);
  static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "accept4"));
  if (system_calls.refusals > 0) {
    --system_calls.refusals;
    errno = EMFILE;
    return -1;
  }
  sockaddr_storage address{};
  socklen_t size = sizeof address;
  const int accepted = next(descriptor, reinterpret_cast<sockaddr *>(&address), &size, flags);
  if (accepted < 0)
    return accepted;
  const int at_once = 1;
  ::setsockopt(accepted, IPPROTO_TCP, TCP_NODELAY, &at_once, sizeof at_once);
  acknowledge_at_once(accepted);
  if (system_calls.accepted)
    system_calls.accepted(accepted, buttondriver::fuzz::port_of(address));
  return accepted;
}

extern "C" ssize_t send(int descriptor, const void *bytes, size_t size, int flags) {
  using Function = ssize_t (*)(int, const void *, size_t, int);
  static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "send"));
  if (system_calls.room <= 0) {
    errno = EAGAIN;
    return -1;
  }
  const ssize_t sent = next(descriptor, bytes, std::min<size_t>(size, static_cast<size_t>(system_calls.room)), flags);
  system_calls.room -= std::max<ssize_t>(sent, 0);
  return sent;
}

extern "C" int close(int descriptor) {
  using Function = int (*)(int);
  static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "close"));
  buttondriver::fuzz::choose_the_end(descriptor);
  return next(descriptor);
}
