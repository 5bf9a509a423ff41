// SPDX-License-Identifier: Apache-2.0
// What pages and requests can make the server keep and do.

#include "simulator/http/page/page_server.h"
#include "support/device/busy_worker.h"
#include "support/event_loop.h"
#include "web_page_fixture.h"

#include <functional>
#include <optional>

namespace buttondriver::simulator {
namespace {

using test::process_events_until;

/// A server of its own beside the fixture's, at which a page is cut off early.
class UnreadPageTest : public WebPageFixture {
protected:
  UnreadPageTest() {
    HttpLimits limits;
    limits.most_unsent_bytes = most_unsent;
    server.emplace(*simulation, limits);
    EXPECT_TRUE(server->listenOn({QHostAddress(QHostAddress::LocalHost), 0}));
    page.connectToHost(QHostAddress(QHostAddress::LocalHost), server->port());
    const QByteArray here = "127.0.0.1:" + QByteArray::number(server->port());
    page.write("GET /live HTTP/1.1\r\nHost: " + here + "\r\nOrigin: http://" + here +
               "\r\nConnection: Upgrade\r\nUpgrade: websocket\r\nSec-WebSocket-Version: 13\r\n"
               "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
    EXPECT_TRUE(process_events_until([this] { return page.bytesAvailable() > 1000; }));
    page.setReadBufferSize(1);
  }

  /// Sends `frame` again and again. Whether the page is cut off before more than `most` bytes have been sent.
  bool isCutOffBy(const QByteArray &frame, qint64 most) {
    QByteArray many;
    while (many.size() < 64 * 1024)
      many += frame;
    qint64 sent = 0;
    return process_events_until([&] {
             for (; page.bytesToWrite() < many.size() && sent < most; sent += many.size())
               page.write(many);
             return page.state() == QAbstractSocket::UnconnectedState || sent >= most;
           }) &&
           page.state() == QAbstractSocket::UnconnectedState;
  }

  static constexpr qint64 most_unsent = 256 * 1024;
  std::optional<PageServer> server;
  QTcpSocket page;
};

/// As a client has to: with a mask, here of zeros.
QByteArray frame_of(char opcode, const QByteArray &payload) {
  return QByteArray(1, static_cast<char>(opcode | '\x80')) + static_cast<char>(payload.size() | 0x80) +
         QByteArray(4, '\0') + payload;
}

TEST_F(UnreadPageTest, is_cut_off_when_it_does_not_take_the_answers_to_its_pings) {
  EXPECT_TRUE(isCutOffBy(frame_of(9, QByteArray(125, 'p')), 64'000'000));
}

TEST_F(UnreadPageTest, is_cut_off_when_it_does_not_take_the_daemon_s_answers) {
  EXPECT_TRUE(isCutOffBy(frame_of(2, QByteArray::fromHex("0000000c")), 16'000'000));
}

class RequestLimitsTest : public WebPageFixture {
protected:
  /// Keeps the panel busy until `busy` is reset.
  void keepBusy() {
    ASSERT_TRUE(process_events_until([this] { return tasks() == 0; }));
    busy.emplace(simulation->daemon()->fpga());
  }
  std::size_t tasks() { return simulation->daemon()->fpga().queueLength(); }

  std::unique_ptr<QTcpSocket> asked(const QByteArray &request) const {
    auto socket = connected();
    socket->write(request + " HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
    return socket;
  }

  std::optional<test::BusyWorker> busy;
};

TEST_F(RequestLimitsTest, however_many_equal_requests_wait_one_task_does_their_work) {
  struct Row {
    const char *request;
    int status;
    std::size_t tasks;
  };
  const Row rows[] = {{"GET /panel.png", 200, 1}, {"GET /screen/0.png", 200, 1}, {"GET /state.json", 200, 1}};
  for (const Row &row : rows) {
    SCOPED_TRACE(row.request);
    keepBusy();
    const auto first = asked(row.request);
    ASSERT_TRUE(process_events_until([this] { return tasks() > 1; }));
    const std::size_t with_the_first = tasks();
    std::vector<std::unique_ptr<QTcpSocket>> others;
    for (int i = 0; i < 20; ++i) {
      asked(row.request)->flush(); // and closes at once
      others.push_back(asked(row.request));
    }
    // The request of another kind has come in after all of them.
    EXPECT_EQ(get("/catalogue.json").status, 200);
    EXPECT_EQ(tasks(), with_the_first);
    busy.reset();
    EXPECT_EQ(reply_from(*first).status, row.status);
    for (const auto &other : others)
      EXPECT_EQ(reply_from(*other).status, row.status);
  }
}

TEST_F(RequestLimitsTest, resets_go_on_one_at_a_time) {
  keepBusy();
  const auto first = asked("POST /reset");
  ASSERT_TRUE(process_events_until([this] { return tasks() > 1; }));
  const std::size_t with_the_first = tasks();
  const auto second = asked("POST /reset");
  EXPECT_EQ(get("/catalogue.json").status, 200);
  EXPECT_EQ(tasks(), with_the_first);
  busy.reset();
  EXPECT_EQ(reply_from(*first).status, 204);
  EXPECT_EQ(reply_from(*second).status, 204);
}

TEST_F(RequestLimitsTest, an_answer_shows_what_was_accepted_before_its_request_also_when_another_goes_on) {
  keepBusy();
  const auto first = asked("GET /state.json");
  ASSERT_TRUE(process_events_until([this] { return tasks() == 2; }));
  sendMessages("00000010 00000011 00000005 00000001 00000000");
  const auto second = asked("GET /state.json");
  EXPECT_EQ(get("/catalogue.json").status, 200);
  busy.reset();
  EXPECT_FALSE(reply_from(*first).json()[QLatin1String("button_leds")][5].toBool());
  EXPECT_TRUE(reply_from(*second).json()[QLatin1String("button_leds")][5].toBool());
}

} // namespace
} // namespace buttondriver::simulator
