// SPDX-License-Identifier: Apache-2.0
// Who gives way when there are as many connections as there may be.
#include "http_server_fixture.h"

#include <QPointer>

#include <sys/socket.h>

namespace buttondriver {
namespace {

using test::process_events_until;

class ConnectionLimitsTest : public HttpServerTest {
protected:
  ConnectionLimitsTest() {
    limits.most_connections = 3;
    limits.request_ms = 600'000;
    limits.farewell_ms = 600'000;
    limits.answer_ms = 600'000;
  }

  /// A connection that the server knows of.
  std::unique_ptr<QTcpSocket> arrived(const QByteArray &request) {
    const int before = openAtTheServer();
    auto socket = sent(request);
    EXPECT_TRUE(process_events_until([&] { return openAtTheServer() > before; }));
    return socket;
  }
  int openAtTheServer() const { return static_cast<int>(server->findChildren<HttpConnection *>().size()); }

  static bool ends(const std::unique_ptr<QTcpSocket> &socket) {
    return process_events_until([&] { return socket->state() == QAbstractSocket::UnconnectedState; });
  }
  static bool lives(const std::unique_ptr<QTcpSocket> &socket) {
    return socket->state() == QAbstractSocket::ConnectedState;
  }

  HttpLimits limits;
};

const QByteArray half = "GET /x HTTP/1.1\r\nHost: local";
const QByteArray other_half = "host\r\n\r\n";

TEST_F(ConnectionLimitsTest, the_oldest_half_request_gives_way) {
  serve(limits);
  const auto first = arrived(half);
  const auto second = arrived(half);
  const auto third = arrived(half);
  const auto fourth = sent(get_x);
  EXPECT_TRUE(process_events_until([&] { return requests.size() == 1; }));
  EXPECT_TRUE(ends(first));
  EXPECT_TRUE(lives(second));
  EXPECT_TRUE(lives(third));
  EXPECT_TRUE(lives(fourth));
  second->write(other_half);
  EXPECT_TRUE(process_events_until([&] { return requests.size() == 2; }));
}

TEST_F(ConnectionLimitsTest, any_number_of_half_requests_keeps_nobody_out) {
  serve(limits);
  std::vector<std::unique_ptr<QTcpSocket>> idle;
  for (int i = 0; i < 50; ++i)
    idle.push_back(sent(half));
  for (std::size_t i = 1; i <= 3; ++i) {
    idle.push_back(sent(get_x));
    ASSERT_TRUE(process_events_until([&] { return clients.size() == i; }));
  }
  EXPECT_LE(openAtTheServer(), 3);
}

TEST_F(ConnectionLimitsTest, who_does_not_hang_up_after_a_refusal_gives_way_like_a_half_request) {
  serve(limits);
  const auto first = arrived(half);
  // It never reads, and so does not see that the server has ended its side.
  first->setReadBufferSize(1);
  const QPointer<HttpConnection> at_the_server = server->findChildren<HttpConnection *>().first();
  first->write("\r\nno header\r\n\r\n");
  ASSERT_TRUE(process_events_until([&] { return at_the_server->state() == HttpConnection::State::refused; }));
  const auto second = arrived(half);
  const auto third = arrived(half);
  const auto fourth = sent(get_x);
  EXPECT_TRUE(process_events_until([&] { return requests.size() == 1; }));
  EXPECT_TRUE(at_the_server.isNull());
  EXPECT_TRUE(lives(second));
  EXPECT_TRUE(lives(third));
}

TEST_F(ConnectionLimitsTest, who_does_not_take_an_answer_gives_way_when_no_half_request_does) {
  serve(limits);
  const auto first = arrived(get_x);
  const auto second = arrived(get_x);
  ASSERT_TRUE(process_events_until([&] { return clients.size() == 2; }));
  // Larger than what the connection takes off its reader's hands.
  HttpAnswer large;
  large.body = QByteArray(20'000'000, 'x');
  second->setReadBufferSize(1);
  clients[1].answer(large);
  const auto third = arrived(half);
  const auto fourth = sent(get_x);
  EXPECT_TRUE(process_events_until([&] { return clients.size() == 3; }));
  EXPECT_TRUE(ends(third));
  EXPECT_TRUE(clients[1].isThere());
  const auto fifth = sent(get_x);
  EXPECT_TRUE(process_events_until([&] { return clients.size() == 4; }));
  EXPECT_FALSE(clients[1].isThere());
  EXPECT_TRUE(clients[0].isThere());
}

TEST_F(ConnectionLimitsTest, nobody_gives_way_whose_answer_is_being_made) {
  serve(limits);
  const auto first = arrived(get_x);
  const auto second = arrived(get_x);
  const auto third = arrived(get_x);
  ASSERT_TRUE(process_events_until([&] { return clients.size() == 3; }));
  const auto fourth = sent(get_x);
  EXPECT_TRUE(ends(fourth));
  EXPECT_EQ(clients.size(), 3U);
  clients[0].answer({});
  EXPECT_TRUE(ends(first));
  const auto fifth = sent(get_x);
  EXPECT_TRUE(process_events_until([&] { return clients.size() == 4; }));
}

TEST_F(ConnectionLimitsTest, nobody_gives_way_who_has_become_a_page) {
  serve(limits);
  const auto first = sent(live);
  const auto second = sent(live);
  const auto third = sent(live);
  ASSERT_TRUE(process_events_until([&] { return upgrades.size() == 3; }));
  EXPECT_TRUE(ends(sent(get_x)));
  EXPECT_TRUE(lives(first));
  EXPECT_TRUE(requests.empty());
}

TEST(ArrivalDuringUpgradeTest, nobody_gives_way_who_becomes_a_page_at_this_moment) {
  class Server : public HttpServer {
  public:
    using HttpServer::HttpServer;
    using HttpServer::incomingConnection;
  };
  HttpLimits limits;
  limits.most_connections = 1;
  Server server(limits, "/live");
  QPointer<QTcpSocket> page;
  QObject::connect(&server, &HttpServer::upgradeRequested, &server, [&](QTcpSocket *socket) {
    page = socket;
    server.incomingConnection(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_FALSE(page.isNull());
  });
  ASSERT_TRUE(server.listenOn({QHostAddress(QHostAddress::LocalHost), 0}));
  QTcpSocket client;
  client.connectToHost(QHostAddress(QHostAddress::LocalHost), server.serverPort());
  client.write(live);
  EXPECT_TRUE(process_events_until([&] { return !page.isNull(); }));
  EXPECT_EQ(server.findChildren<QTcpSocket *>().size(), 1);
}

} // namespace
} // namespace buttondriver
