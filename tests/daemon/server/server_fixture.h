// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "daemon/server/remembering_setter.h"
#include "server/client_buttondriver.h"
#include "server/connector.h"
#include "support/captured_log.h"
#include "support/event_loop.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <memory>

namespace buttondriver::test {

/// The message of a ping.
inline const QByteArray ping = QByteArray::fromHex("0000000c");

/// `message` with its length in front of it.
inline QByteArray frame(const QByteArray &message) {
  return QByteArray::fromHex(QByteArray::number(static_cast<int>(message.size()), 16).rightJustified(8, '0')) + message;
}

/// Ends the connection by a reset instead of an orderly close.
inline void reset(QTcpSocket &socket) {
  const linger at_once{1, 0};
  ASSERT_EQ(::setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once),
            0);
  socket.abort();
}

/// A server on a free port, whose messages a RememberingSetter gets.
class ServerFixture : public testing::Test {
protected:
  ServerFixture() { EXPECT_TRUE(connector.listen()); }

  /// A client that is connected, and that the server has accepted.
  std::unique_ptr<QTcpSocket> connectClient(const QHostAddress &address = QHostAddress::LocalHost) {
    const std::size_t before = connector.clients().size();
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(address, connector.port());
    EXPECT_TRUE(process_events_until(
        [&] { return connector.clients().size() > before && socket->state() == QAbstractSocket::ConnectedState; }));
    return socket;
  }

  /// Messages delivered since the start, or since setter.forget().
  std::size_t delivered() const { return setter.delivered; }

  /// What all sockets of the server hold for their clients.
  qint64 held() const {
    qint64 bytes = 0;
    for (const ClientButtondriver *client : connector.clients())
      bytes += client->findChild<QTcpSocket *>()->bytesAvailable();
    return bytes;
  }

  /// Returns when the server has done what it can do about all that clients have written or ended before. A byte goes
  /// through the loopback several times: what clients sent arrives before it, and all who want a turn have had one
  /// each time.
  void settle() {
    QTcpServer door;
    ASSERT_TRUE(door.listen(QHostAddress::LocalHost));
    QTcpSocket near_end;
    near_end.connectToHost(QHostAddress::LocalHost, door.serverPort());
    ASSERT_TRUE(process_events_until([&] { return door.hasPendingConnections(); }));
    const QTcpSocket *far_end = door.nextPendingConnection(); // belongs to the door
    for (int passes = 1; passes <= 5; ++passes) {
      near_end.write("x");
      ASSERT_TRUE(process_events_until([&] { return far_end->bytesAvailable() == passes; }));
    }
  }

  CapturedLog log;
  RememberingSetter setter;
  Connector connector{QString(), 0, &setter};
};

} // namespace buttondriver::test
