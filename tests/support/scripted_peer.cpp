// SPDX-License-Identifier: Apache-2.0
#include "support/scripted_peer.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

namespace buttondriver::test {

namespace {

constexpr int patience_ms = 10000;
/// A connection on the same machine that takes this long to complete is not going to.
constexpr int jammed_after_ms = 100;

void require(bool condition, const char *what) {
  if (!condition)
    throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

bool becomes(int descriptor, short event, int wait_ms) {
  pollfd wanted{descriptor, event, 0};
  return ::poll(&wanted, 1, wait_ms) == 1;
}

sockaddr_in address_of(int descriptor) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  require(::getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size) == 0, "getsockname");
  return address;
}

} // namespace

ScriptedPeer::ScriptedPeer(Door door, int receive_buffer) : _door(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  require(_door != -1, "socket");
  if (receive_buffer > 0)
    ::setsockopt(_door, SOL_SOCKET, SO_RCVBUF, &receive_buffer, sizeof receive_buffer);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  require(::bind(_door, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0, "bind");
  if (door == Door::open)
    open_door();
  if (door == Door::jammed)
    jam();
}

ScriptedPeer::~ScriptedPeer() {
  hang_up();
  for (const int connection : _crowd)
    ::close(connection);
  ::close(_door);
}

std::uint16_t ScriptedPeer::port() const { return ntohs(address_of(_door).sin_port); }

void ScriptedPeer::open_door() { require(::listen(_door, 8) == 0, "listen"); }

bool ScriptedPeer::has_caller() const { return becomes(_door, POLLIN, 0); }

void ScriptedPeer::accept() {
  hang_up();
  require(becomes(_door, POLLIN, patience_ms), "no client came");
  _client = ::accept4(_door, nullptr, nullptr, SOCK_CLOEXEC);
  require(_client != -1, "accept");
  timeval limit{};
  limit.tv_sec = patience_ms / 1000;
  ::setsockopt(_client, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

std::string ScriptedPeer::read(std::size_t count, std::size_t at_a_time) {
  std::string bytes(count, '\0');
  for (std::size_t have = 0; have < count;) {
    const std::size_t got = read_some(&bytes[have], std::min(at_a_time, count - have));
    require(got > 0, "the client closed the connection too early");
    have += got;
  }
  return bytes;
}

std::string ScriptedPeer::read_to_end() {
  std::string bytes;
  char place[65536];
  for (std::size_t got = read_some(place, sizeof place); got > 0; got = read_some(place, sizeof place))
    bytes.append(place, got);
  return bytes;
}

std::size_t ScriptedPeer::read_some(char *place, std::size_t count) {
  const ssize_t got = ::recv(_client, place, count, 0);
  require(got >= 0, "recv");
  return static_cast<std::size_t>(got);
}

void ScriptedPeer::write(const std::string &bytes) {
  require(::send(_client, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size()), "send");
}

void ScriptedPeer::hang_up() {
  if (_client != -1)
    ::close(std::exchange(_client, -1));
}

void ScriptedPeer::jam() {
  // With no room for waiting clients the kernel drops what comes after the first few.
  require(::listen(_door, 0) == 0, "listen");
  const sockaddr_in address = address_of(_door);
  do {
    require(_crowd.size() < 16, "the door cannot be jammed");
    _crowd.push_back(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    require(_crowd.back() != -1, "socket");
    const int result = ::connect(_crowd.back(), reinterpret_cast<const sockaddr *>(&address), sizeof address);
    require(result == 0 || errno == EINPROGRESS, "connect");
  } while (becomes(_crowd.back(), POLLOUT, jammed_after_ms));
}

} // namespace buttondriver::test
