// SPDX-License-Identifier: Apache-2.0
#include "fleet/panels/held_port.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/select.h>
#include <sys/socket.h>
#include <utility>

namespace buttondriver::fleet {

namespace {

/// Bound to `port` of this machine; -1 inside when that fails.
OwnedDescriptor bound_socket(std::uint16_t port) {
  OwnedDescriptor descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  const int yes = 1;
  ::setsockopt(descriptor.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  if (::bind(descriptor.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
    throw std::runtime_error("no port of 127.0.0.1 can be had");
  return out_of_the_way(std::move(descriptor));
}

} // namespace

HeldPort::HeldPort() : _descriptor(bound_socket(0)) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  ::getsockname(_descriptor.get(), reinterpret_cast<sockaddr *>(&address), &size);
  _number = ntohs(address.sin_port);
}

OwnedDescriptor HeldPort::listen() const {
  OwnedDescriptor descriptor = bound_socket(_number);
  if (::listen(descriptor.get(), 4) != 0)
    throw std::runtime_error("a port cannot be listened on");
  return descriptor;
}

OwnedDescriptor out_of_the_way(OwnedDescriptor descriptor) {
  OwnedDescriptor higher(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, FD_SETSIZE));
  return higher ? std::move(higher) : std::move(descriptor);
}

} // namespace buttondriver::fleet
