// SPDX-License-Identifier: Apache-2.0
// The server without a page: what it hands on, and what happens to those who take their time.
#include "http_server_fixture.h"

namespace buttondriver {
namespace {

using test::process_events_until;

TEST_F(HttpServerTest, a_request_is_answered_later_and_the_connection_ends) {
  serve();
  const auto socket = sent(get_x);
  ASSERT_TRUE(process_events_until([&] { return clients.size() == 1; }));
  EXPECT_EQ(requests[0].target, "/x");
  EXPECT_EQ(socket->bytesAvailable(), 0);
  clients[0].answer(HttpAnswer::fault(404, "not here"));
  const QByteArray answer = received(*socket);
  EXPECT_TRUE(answer.startsWith("HTTP/1.1 404 Not Found\r\n")) << answer.toStdString();
  EXPECT_TRUE(answer.contains("\r\nConnection: close\r\n"));
  EXPECT_TRUE(answer.endsWith("\r\n\r\nnot here\n"));
}

TEST_F(HttpServerTest, an_answer_to_a_client_that_has_gone_goes_nowhere) {
  serve();
  auto socket = sent(get_x);
  ASSERT_TRUE(process_events_until([&] { return clients.size() == 1; }));
  socket->abort();
  ASSERT_TRUE(process_events_until([&] { return server->findChildren<QTcpSocket *>().isEmpty(); }));
  clients[0].answer({});
}

TEST_F(HttpServerTest, a_websocket_is_handed_on_with_its_request_unread) {
  serve();
  const auto socket = sent(live);
  ASSERT_TRUE(process_events_until([&] { return !upgrades.empty(); }));
  EXPECT_TRUE(requests.empty());
  EXPECT_EQ(upgrades.size(), 1U);
  EXPECT_EQ(upgrades[0]->readAll(), live);
  // The kernel doubles what it is asked for.
  EXPECT_LE(upgrades[0]->socketOption(QAbstractSocket::ReceiveBufferSizeSocketOption).toInt(), 256 * 1024);
  EXPECT_LE(upgrades[0]->socketOption(QAbstractSocket::SendBufferSizeSocketOption).toInt(), 256 * 1024);
  // From now on it is not looked at: what would be a second request comes through.
  socket->write(get_x);
  EXPECT_TRUE(process_events_until([&] { return upgrades[0]->bytesAvailable() == get_x.size(); }));
  EXPECT_EQ(upgrades[0]->state(), QAbstractSocket::ConnectedState);
}

TEST_F(HttpServerTest, a_request_that_does_not_arrive_in_time_is_refused) {
  HttpLimits limits;
  limits.request_ms = 1;
  serve(limits);
  const auto socket = sent("GET / HTTP/1.1\r\nHost: ");
  const QByteArray answer = received(*socket);
  EXPECT_TRUE(answer.startsWith("HTTP/1.1 408 Request Timeout\r\n")) << answer.toStdString();
  EXPECT_TRUE(answer.endsWith("\r\n\r\nthe request took too long\n"));
}

TEST_F(HttpServerTest, a_request_that_is_not_answered_in_time_ends_without_an_answer) {
  HttpLimits limits;
  limits.answer_ms = 1;
  serve(limits);
  const auto socket = sent(get_x);
  EXPECT_EQ(received(*socket), "");
  EXPECT_EQ(clients.size(), 1U);
}

TEST_F(HttpServerTest, a_refused_client_that_does_not_hang_up_is_cut_off) {
  HttpLimits limits;
  limits.request_ms = 60'000;
  limits.farewell_ms = 1;
  serve(limits);
  // It never reads, and so does not see that the server has ended its side.
  QTcpSocket deaf;
  deaf.setReadBufferSize(1);
  deaf.connectToHost(QHostAddress(QHostAddress::LocalHost), server->serverPort());
  ASSERT_TRUE(process_events_until([&] { return !server->findChildren<QTcpSocket *>().isEmpty(); }));
  QTcpSocket *const at_the_server = server->findChildren<QTcpSocket *>().first();
  deaf.write("no HTTP\r\n\r\n");
  bool has_ended = false;
  QObject::connect(at_the_server, &QObject::destroyed, &*server, [&] { has_ended = true; });
  EXPECT_TRUE(process_events_until([&] { return has_ended; }));
}

TEST_F(HttpServerTest, a_port_that_is_taken_is_a_failure) {
  serve();
  HttpServer second;
  const auto listening = second.listenOn({QHostAddress(QHostAddress::LocalHost), server->serverPort()});
  ASSERT_FALSE(listening);
  EXPECT_EQ(listening.failure().text.toStdString(), "The bound address is already in use");
}

} // namespace
} // namespace buttondriver
