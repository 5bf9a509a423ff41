// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/running/client.h"

#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <utility>

namespace buttondriver::yardsticks {

Client::Client(std::uint16_t port) : _descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  const int at_once = 1;
  ::setsockopt(_descriptor.get(), IPPROTO_TCP, TCP_NODELAY, &at_once, sizeof at_once);
  const timeval limit{60, 0};
  ::setsockopt(_descriptor.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(_descriptor.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
    throw std::runtime_error("a server cannot be connected to");
}

void Client::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(_descriptor.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(sent));
      continue;
    }
    if (errno != EAGAIN && errno != EINTR)
      throw std::runtime_error("a server has ended a connection");
    waitFor(POLLIN | POLLOUT);
  }
}

std::string Client::take() {
  if (_received.empty())
    receive();
  return std::exchange(_received, {});
}

void Client::expect(std::size_t bytes) {
  while (_received.size() < bytes)
    receive();
  if (_received.size() > bytes)
    throw std::runtime_error("a server answers more than it was asked");
  _received.clear();
}

void Client::waitFor(short events) {
  constexpr int limit_ms = 60'000;
  pollfd socket{_descriptor.get(), events, 0};
  if (::poll(&socket, 1, limit_ms) <= 0)
    throw std::runtime_error("a server does not read");
  if ((socket.revents & POLLIN) != 0)
    receive();
}

void Client::receive() {
  std::array<char, 16 * 1024> place; // not cleared: that would be measured too
  const ssize_t size = ::recv(_descriptor.get(), place.data(), place.size(), 0);
  if (size <= 0)
    throw std::runtime_error("a server does not answer");
  _received.append(place.data(), static_cast<std::size_t>(size));
}

} // namespace buttondriver::yardsticks
