// SPDX-License-Identifier: Apache-2.0
#include "bridge/seen/metrics_server.h"
#include "support/event_loop.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <memory>

namespace buttondriver::bridge {
namespace {

using test::process_events_until;

class MetricsServerTest : public testing::Test {
protected:
  void serve(const HttpLimits &limits) {
    _server =
        std::make_unique<MetricsServer>([this] { return "page " + QByteArray::number(++pages); }, limits, nullptr);
    ASSERT_TRUE(_server->start(0));
  }

  std::unique_ptr<QTcpSocket> sent(const QByteArray &request) {
    if (!_server)
      serve({});
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QHostAddress(QHostAddress::LocalHost), _server->port());
    EXPECT_TRUE(process_events_until([&] { return socket->state() == QAbstractSocket::ConnectedState; }));
    socket->write(request);
    return socket;
  }

  static QByteArray received(QTcpSocket &socket) {
    EXPECT_TRUE(process_events_until([&] { return socket.state() == QAbstractSocket::UnconnectedState; }));
    return socket.readAll();
  }

  QByteArray answer(const QByteArray &request) { return received(*sent(request)); }

  int pages = 0; ///< that were asked for

private:
  std::unique_ptr<MetricsServer> _server;
};

TEST_F(MetricsServerTest, serves_the_page_as_it_is_now) {
  const QByteArray request = "GET /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n";
  const QByteArray first = answer(request);
  EXPECT_TRUE(first.startsWith("HTTP/1.1 200 OK\r\n")) << first.constData();
  EXPECT_TRUE(first.contains("\r\nContent-Type: text/plain; version=0.0.4; charset=utf-8\r\n")) << first.constData();
  EXPECT_TRUE(first.contains("\r\nContent-Length: 6\r\n")) << first.constData();
  EXPECT_TRUE(first.endsWith("\r\n\r\npage 1")) << first.constData();
  EXPECT_TRUE(answer(request).endsWith("\r\n\r\npage 2"));
}

TEST_F(MetricsServerTest, tells_by_head_how_long_the_page_is) {
  const QByteArray head = answer("HEAD /metrics HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n");
  EXPECT_TRUE(head.startsWith("HTTP/1.1 200 OK\r\n")) << head.constData();
  EXPECT_TRUE(head.contains("\r\nContent-Length: 6\r\n")) << head.constData();
  EXPECT_TRUE(head.endsWith("\r\n\r\n")) << head.constData();
}

TEST_F(MetricsServerTest, makes_no_page_for_other_requests) {
  struct Row {
    const char *request;
    const char *status;
  };
  const Row rows[] = {
      {"GET / HTTP/1.1\r\nHost: localhost\r\n\r\n", "404"},
      {"GET /metrics/ HTTP/1.1\r\nHost: localhost\r\n\r\n", "404"},
      {"POST /other HTTP/1.1\r\nHost: localhost\r\nContent-Length: 0\r\n\r\n", "404"},
      {"POST /metrics HTTP/1.1\r\nHost: localhost\r\nContent-Length: 0\r\n\r\n", "405"},
      {"DELETE /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n", "405"},
      {"GET /metrics HTTP/1.1\r\n\r\n", "400"},
      {"GET /metrics\r\n\r\n", "400"},
      {"GET /metrics HTTP/1.1\r\nHost: other.example\r\n\r\n", "403"},
      {"GET /live HTTP/1.1\r\nHost: localhost\r\nConnection: Upgrade\r\nUpgrade: websocket\r\n\r\n", "404"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(answer(row.request).mid(9, 3).toStdString(), row.status) << row.request;
  EXPECT_EQ(pages, 0);
  EXPECT_TRUE(answer(rows[3].request).contains("\r\nAllow: GET, HEAD\r\n"));
}

TEST_F(MetricsServerTest, refuses_a_request_that_is_too_long) {
  EXPECT_EQ(answer("GET /metrics HTTP/1.1\r\nX: " + QByteArray(20000, 'x')).mid(9, 3), "431");
}

TEST_F(MetricsServerTest, refuses_a_request_that_never_ends) {
  HttpLimits limits;
  limits.request_ms = 1;
  serve(limits);
  EXPECT_EQ(answer("GET /metrics HTTP/1.1\r\n").mid(9, 3), "408");
}

TEST_F(MetricsServerTest, lets_the_oldest_unfinished_request_give_way) {
  HttpLimits limits;
  limits.request_ms = 3'600'000;
  limits.most_connections = 3;
  serve(limits);
  const auto oldest = sent("GET ");
  const auto second = sent("GET ");
  const auto third = sent("GET ");
  EXPECT_TRUE(answer("GET /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n").endsWith("page 1"));
  EXPECT_EQ(received(*oldest), "");
  EXPECT_EQ(second->state(), QAbstractSocket::ConnectedState);
  EXPECT_EQ(third->state(), QAbstractSocket::ConnectedState);
}

TEST_F(MetricsServerTest, is_there_on_one_address_of_this_machine) {
  MetricsServer server([] { return QByteArray("page"); });
  ASSERT_TRUE(server.start(0));
  // The whole of 127.0.0.0/8 belongs to the machine itself.
  struct Row {
    const char *address;
    bool is_there;
  };
  for (const Row &row : {Row{"127.0.0.1", true}, Row{"127.0.0.2", false}}) {
    QTcpSocket socket;
    bool is_over = false;
    QObject::connect(&socket, &QTcpSocket::stateChanged, [&](QAbstractSocket::SocketState state) {
      is_over |= state == QAbstractSocket::ConnectedState || state == QAbstractSocket::UnconnectedState;
    });
    socket.connectToHost(QHostAddress(QString::fromLatin1(row.address)), server.port());
    EXPECT_TRUE(process_events_until([&] { return is_over; }));
    EXPECT_EQ(socket.state() == QAbstractSocket::ConnectedState, row.is_there) << row.address;
  }
}

TEST_F(MetricsServerTest, serves_a_page_of_20_mebibytes) {
  MetricsServer server([] { return QByteArray(20 * 1024 * 1024, 'x'); });
  ASSERT_TRUE(server.start(0));
  QTcpSocket socket;
  socket.connectToHost(QHostAddress(QHostAddress::LocalHost), server.port());
  socket.write("GET /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n");
  const QByteArray answer = received(socket);
  EXPECT_GT(answer.size(), 20 * 1024 * 1024);
  EXPECT_TRUE(answer.startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(MetricsServerTest, says_which_port_cannot_be_had) {
  QTcpServer other;
  ASSERT_TRUE(other.listen(QHostAddress(QHostAddress::LocalHost)));
  MetricsServer server([] { return QByteArray(); });
  const auto outcome = server.start(other.serverPort());
  ASSERT_FALSE(outcome);
  EXPECT_TRUE(outcome.failure().text.contains(QString::number(other.serverPort())))
      << outcome.failure().text.toStdString();
}

} // namespace
} // namespace buttondriver::bridge
