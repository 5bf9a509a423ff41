// SPDX-License-Identifier: Apache-2.0
#include "http/server/bounded_socket.h"

#include "support/event_loop.h"

#include <QTcpServer>

#include <gtest/gtest.h>

namespace buttondriver {
namespace {

using test::process_events_until;

class BoundedSocketTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    socket.connectToHost(server.serverAddress(), server.serverPort());
    ASSERT_TRUE(process_events_until([this] { return server.hasPendingConnections(); }));
    peer = server.nextPendingConnection();
    peer->setReadBufferSize(1);
  }

  QTcpServer server;
  BoundedSocket socket{1000};
  QTcpSocket *peer = nullptr;
};

TEST_F(BoundedSocketTest, keeps_the_limit_and_one_write_and_ends_when_there_is_more) {
  const QByteArray large(20'000'000, 'x');
  EXPECT_EQ(socket.write(large), large.size());
  ASSERT_TRUE(process_events_until([&] { return socket.bytesToWrite() < large.size(); }));
  const qint64 waiting = socket.bytesToWrite();
  for (int i = 0; i < 1000; ++i)
    EXPECT_EQ(socket.write(large), large.size());
  EXPECT_EQ(socket.bytesToWrite(), waiting);
  EXPECT_EQ(socket.state(), QAbstractSocket::ConnectedState);
  EXPECT_TRUE(process_events_until([this] { return socket.state() == QAbstractSocket::UnconnectedState; }));
}

TEST_F(BoundedSocketTest, lives_on_while_no_more_than_the_limit_waits) {
  socket.write(QByteArray(1000, 'x'));
  socket.write("y");
  EXPECT_EQ(socket.bytesToWrite(), 1001);
  peer->setReadBufferSize(0);
  EXPECT_TRUE(process_events_until([this] { return peer->bytesAvailable() == 1001; }));
  EXPECT_TRUE(peer->readAll().endsWith("xy"));
  EXPECT_EQ(socket.state(), QAbstractSocket::ConnectedState);
}

} // namespace
} // namespace buttondriver
