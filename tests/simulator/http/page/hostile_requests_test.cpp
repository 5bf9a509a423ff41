// SPDX-License-Identifier: Apache-2.0
// Requests of other sites, of no HTTP at all, and of clients that want to keep the server busy.

#include "support/event_loop.h"
#include "web_page_fixture.h"

#include <vector>

namespace buttondriver::simulator {
namespace {

class HostileRequestsTest : public WebPageFixture {};

TEST_F(HostileRequestsTest, are_refused_and_change_nothing) {
  struct Row {
    const char *title;
    QByteArray request;
    int status;
  };
  const QByteArray good = "Host: " + host() + "\r\n";
  const QByteArray live = "Connection: Upgrade\r\nUpgrade: websocket\r\nSec-WebSocket-Version: 13\r\n"
                          "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n";
  const Row rows[] = {
      {"a foreign name", "GET /state.json HTTP/1.1\r\nHost: evil.example\r\n\r\n", 403},
      {"a foreign name with our port",
       "POST /reset HTTP/1.1\r\nHost: evil.example:" + QByteArray::number(port()) + "\r\n\r\n", 403},
      {"another site", "POST /reset HTTP/1.1\r\n" + good + "Origin: http://evil.example\r\n\r\n", 403},
      {"another port", "POST /reset HTTP/1.1\r\n" + good + "Origin: http://127.0.0.1:1\r\n\r\n", 403},
      {"a sandboxed page", "POST /reset HTTP/1.1\r\n" + good + "Origin: null\r\n\r\n", 403},
      {"a live page of another site", "GET /live HTTP/1.1\r\n" + good + live + "Origin: http://evil.example\r\n\r\n",
       403},
      {"a live page by a foreign name",
       "GET /live HTTP/1.1\r\nHost: evil.example\r\nOrigin: http://evil.example\r\n" + live + "\r\n", 403},
      {"a live page elsewhere", "GET / HTTP/1.1\r\n" + good + live + "\r\n", 404},
      {"a picture in another site", "GET /panel.png HTTP/1.1\r\n" + good + "Sec-Fetch-Site: cross-site\r\n\r\n", 403},
      {"a second upgrade", "GET /live HTTP/1.1\r\n" + good + live + "Upgrade: websocket\r\n\r\n", 400},
      {"an unknown upgrade", "GET / HTTP/1.1\r\n" + good + "Connection: Upgrade\r\nUpgrade: h2c\r\n\r\n", 400},
      {"a method", "DELETE / HTTP/1.1\r\n" + good + "\r\n", 405},
      {"a large head", "GET / HTTP/1.1\r\n" + good + "X: " + QByteArray(20000, 'x') + "\r\n\r\n", 431},
      {"an endless line", QByteArray(20000, 'x'), 431},
      {"a large body", "POST /reset HTTP/1.1\r\n" + good + "Content-Length: 1025\r\n\r\n", 413},
      {"a body in chunks", "POST /reset HTTP/1.1\r\n" + good + "Transfer-Encoding: chunked\r\n\r\n0\r\n\r\n", 411},
      {"two requests in one", "GET / HTTP/1.1\r\n" + good + "\r\nPOST /reset HTTP/1.1\r\n" + good + "\r\n", 400},
      {"no HTTP", "\x16\x03\x01\x02\x01\r\n\r\n", 400},
  };
  sendMessages("00000010 00000011 00000005 00000001 00000000");
  for (const Row &row : rows) {
    const Reply answer = ask(row.request);
    EXPECT_EQ(answer.status, row.status) << row.title;
    EXPECT_TRUE(answer.body.endsWith('\n')) << row.title;
  }
  const Reply state = get("/state.json");
  ASSERT_EQ(state.status, 200);
  EXPECT_TRUE(state.json()[QLatin1String("button_leds")][5].toBool());
}

TEST_F(HostileRequestsTest, a_request_that_comes_byte_by_byte_is_taken_whole) {
  const auto socket = connected();
  for (const char byte : "POST /reset HTTP/1.1\r\nHost: " + host() + "\r\nContent-Length: 3\r\n\r\nabc") {
    socket->write(&byte, 1);
    ASSERT_TRUE(test::process_events_until([&] { return socket->bytesToWrite() == 0; }));
  }
  EXPECT_EQ(reply_from(*socket).status, 204);
}

TEST_F(HostileRequestsTest, an_unfinished_request_keeps_nobody_waiting) {
  std::vector<std::unique_ptr<QTcpSocket>> idle;
  for (int i = 0; i < 50; ++i) {
    idle.push_back(connected());
    idle.back()->write("GET / HTTP/1.1\r\nHost: ");
  }
  EXPECT_EQ(get("/state.json").status, 200);
}

TEST_F(HostileRequestsTest, connections_are_limited_and_those_without_a_request_give_way) {
  std::vector<std::unique_ptr<QTcpSocket>> idle;
  for (int i = 0; i < 101; ++i)
    idle.push_back(connected());
  const auto &first = idle.front();
  EXPECT_TRUE(test::process_events_until([&] { return first->state() == QAbstractSocket::UnconnectedState; }));
  EXPECT_EQ(idle.back()->state(), QAbstractSocket::ConnectedState);
  EXPECT_EQ(get("/state.json").status, 200);
}

TEST_F(HostileRequestsTest, a_handshake_that_is_none_ends_the_connection) {
  const QByteArray head = "GET /live HTTP/1.1\r\nHost: " + host() + "\r\nConnection: Upgrade\r\nUpgrade: websocket\r\n";
  const auto socket = connected();
  socket->write(head + "\r\n");
  EXPECT_TRUE(test::process_events_until([&] { return socket->state() == QAbstractSocket::UnconnectedState; }));
}

TEST_F(HostileRequestsTest, there_is_one_request_to_a_connection) {
  const auto socket = connected();
  socket->write("GET /panel.png HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
  // The picture takes its time, in which the second request arrives.
  ASSERT_TRUE(test::process_events_until([&] { return socket->bytesToWrite() == 0; }));
  socket->write("POST /reset HTTP/1.1\r\nHost: evil.example\r\n\r\n");
  sendMessages("00000010 00000011 00000005 00000001 00000000");
  reply_from(*socket);
  EXPECT_TRUE(get("/state.json").json()[QLatin1String("button_leds")][5].toBool());
}

} // namespace
} // namespace buttondriver::simulator
