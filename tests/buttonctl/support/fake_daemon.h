// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <QByteArray>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>

#include <cstdint>
#include <functional>

namespace buttondriver::test {

/// A server on a port that the system gives, which keeps what clients send. It closes a connection after its client
/// has, as the daemon does.
class FakeDaemon {
public:
  FakeDaemon();
  FakeDaemon(const FakeDaemon &) = delete;
  FakeDaemon &operator=(const FakeDaemon &) = delete;

  std::uint16_t port() const { return _server.serverPort(); }
  /// All bytes received, of all connections.
  const QByteArray &received() const { return _received; }
  /// Connections ever accepted.
  int connections() const { return _connections; }
  /// Those of them that nobody has closed.
  int open_connections() const { return static_cast<int>(_open.size()); }

  /// Each whole ping frame is answered with `answer`.
  void answer_pings_with(const QByteArray &answer) { _answer = answer; }
  /// Sends `bytes` on every open connection at once.
  void write(const QByteArray &bytes);
  /// Called when bytes have come; may cut the connection off.
  void when_received(std::function<void(QTcpSocket &)> action) { _action = std::move(action); }
  /// Connections accepted from now on are not read, but for a byte.
  void leave_unread();
  /// Everything is read again, that which was left included.
  void read_on();

private:
  void accept();
  void take(QTcpSocket &socket);

  QByteArray _received;
  QByteArray _unanswered;
  QByteArray _answer;
  std::function<void(QTcpSocket &)> _action;
  bool _leave_unread = false;
  int _connections = 0;
  QList<QTcpSocket *> _open;
  QTcpServer _server; ///< the last, since the end of its sockets is noted in what stands above
};

/// A port on which nothing listens, kept from others while this lives.
class RefusingPort {
public:
  RefusingPort();

  std::uint16_t port() const { return _port; }

private:
  OwnedDescriptor _descriptor;
  std::uint16_t _port;
};

} // namespace buttondriver::test
