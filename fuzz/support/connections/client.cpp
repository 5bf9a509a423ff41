// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/connections/client.h"

#include "fuzz/support/connections/system_calls.h"
#include "fuzz/support/require.h"

#include <algorithm>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace buttondriver::fuzz {

namespace {

sockaddr_in loopback(std::uint8_t host, std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(0x7F000000U | host);
  return address;
}

/// The fuzzer's own timer may interrupt the wait; the connection comes all the same.
bool connects(int socket, const sockaddr_in &server) {
  while (::connect(socket, reinterpret_cast<const sockaddr *>(&server), sizeof server) != 0) {
    if (errno == EISCONN)
      return true;
    if (errno != EINTR && errno != EALREADY)
      return false;
  }
  return true;
}

} // namespace

Client::Client(std::uint16_t port, std::uint8_t host) : _socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in own = loopback(host, 0);
  const sockaddr_in server = loopback(1, port);
  socklen_t size = sizeof own;
  const int at_once = 1;
  ::setsockopt(_socket.get(), IPPROTO_TCP, TCP_NODELAY, &at_once, sizeof at_once);
  require(::bind(_socket.get(), reinterpret_cast<const sockaddr *>(&own), sizeof own) == 0 &&
              connects(_socket.get(), server) &&
              ::getsockname(_socket.get(), reinterpret_cast<sockaddr *>(&own), &size) == 0,
          "everybody can connect");
  _port = ntohs(own.sin_port);
}

void Client::put(const QByteArray &bytes) {
  if (_state == State::open)
    _waiting += bytes;
}

void Client::flush(qint64 most) {
  if (_state != State::open || _waiting.isEmpty())
    return;
  const auto size = static_cast<std::size_t>(std::min<qint64>(most, _waiting.size()));
  // Not send, which is the server's here.
  const ssize_t sent = ::sendto(_socket.get(), _waiting.constData(), size, MSG_DONTWAIT | MSG_NOSIGNAL, nullptr, 0);
  if (sent > 0) {
    _sent.append(_waiting.left(static_cast<int>(sent)));
    _waiting.remove(0, static_cast<int>(sent));
  } else if (sent < 0 && errno != EAGAIN) {
    _waiting.clear(); // the server has refused it, or given its place away
  }
}

void Client::acknowledge() {
  if (_socket)
    acknowledge_at_once(_socket.get());
}

void Client::readAnswers() {
  if (isGone())
    return;
  char bytes[4096];
  ssize_t got = 0;
  while ((got = ::recv(_socket.get(), bytes, sizeof bytes, MSG_DONTWAIT)) > 0)
    for (ssize_t i = 0; i < got; ++i)
      require(bytes[i] == answer[_answer_bytes++ % answer_size], "answers come whole");
  if (got == 0 || errno != EAGAIN) {
    _socket.reset();
    _state = State::read_out;
  }
}

void Client::finish() {
  if (_state != State::open)
    return;
  _waiting.clear();
  ::shutdown(_socket.get(), SHUT_WR);
  _state = State::finished;
}

void Client::leave(bool is_reset) {
  if (isGone())
    return;
  int on_its_way = 1;
  _has_system_all = ::ioctl(_socket.get(), TIOCOUTQ, &on_its_way) == 0 && on_its_way == 0;
  const linger at_once{1, 0};
  if (is_reset)
    ::setsockopt(_socket.get(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
  _socket.reset();
  _state = State::left;
}

} // namespace buttondriver::fuzz
