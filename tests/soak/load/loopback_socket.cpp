// SPDX-License-Identifier: Apache-2.0
#include "soak/load/loopback_socket.h"

#include <cerrno>
#include <fcntl.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace buttondriver::soak {

LoopbackSocket::LoopbackSocket(std::uint16_t port, int receive_buffer)
    : _descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  if (receive_buffer > 0)
    ::setsockopt(_descriptor.get(), SOL_SOCKET, SO_RCVBUF, &receive_buffer, sizeof receive_buffer);
  const int at_once = 1;
  ::setsockopt(_descriptor.get(), IPPROTO_TCP, TCP_NODELAY, &at_once, sizeof at_once);
  const timeval limit{5, 0};
  ::setsockopt(_descriptor.get(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(_descriptor.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
    close();
  else
    ::fcntl(_descriptor.get(), F_SETFL, O_NONBLOCK);
}

void LoopbackSocket::reset() {
  const linger at_once{1, 0};
  ::setsockopt(_descriptor.get(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
  close();
}

std::size_t LoopbackSocket::send(std::string_view bytes) {
  return isOpen() ? countOrClose(::send(_descriptor.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL)) : 0;
}

std::size_t LoopbackSocket::receive(char *place, std::size_t count) {
  if (!isOpen())
    return 0;
  const ssize_t received = ::recv(_descriptor.get(), place, count, 0);
  if (received == 0)
    close();
  return countOrClose(received);
}

bool LoopbackSocket::waitForData(int limit_ms) const {
  pollfd socket{_descriptor.get(), POLLIN, 0};
  return ::poll(&socket, 1, limit_ms) > 0;
}

bool LoopbackSocket::hasArrived() const {
  int unacknowledged = 0;
  return ::ioctl(_descriptor.get(), SIOCOUTQ, &unacknowledged) == 0 && unacknowledged == 0;
}

std::size_t LoopbackSocket::countOrClose(ssize_t result) {
  if (result >= 0)
    return static_cast<std::size_t>(result);
  if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)
    close();
  return 0;
}

} // namespace buttondriver::soak
