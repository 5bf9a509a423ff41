// SPDX-License-Identifier: Apache-2.0
// Who gets a place when all are taken.

#include "daemon/server/server_fixture.h"
#include "server/limits.h"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace buttondriver {
namespace {

using test::frame;
using test::ping;
using test::process_events_until;
using testing::Contains;
using testing::HasSubstr;

class PlacesTest : public testing::Test {
protected:
  static constexpr std::size_t places = 5;

  PlacesTest() { EXPECT_TRUE(connector.listen()); }

  /// A client that has got a place, and has sent a message if it `speaks`.
  QTcpSocket &add(bool speaks, const char *address = "127.0.0.1") {
    const std::size_t messages = setter.delivered;
    sockets.push_back(startClient(address));
    QTcpSocket &socket = *sockets.back();
    const auto logged_port = socket.localPort();
    EXPECT_TRUE(process_events_until([&] { return has(logged_port); }));
    if (speaks)
      socket.write(frame(ping));
    EXPECT_TRUE(process_events_until([&] { return setter.delivered == messages + (speaks ? 1 : 0); }));
    return socket;
  }

  std::unique_ptr<QTcpSocket> startClient(const char *address) const {
    auto socket = std::make_unique<QTcpSocket>();
    EXPECT_TRUE(socket->bind(QHostAddress(QLatin1String(address))));
    socket->connectToHost(QHostAddress::LocalHost, connector.port());
    EXPECT_TRUE(process_events_until([&] { return socket->state() == QAbstractSocket::ConnectedState; }));
    return socket;
  }

  /// Whether the client at this port has a place.
  bool has(quint16 port) const {
    return std::any_of(connector.clients().begin(), connector.clients().end(),
                       [port](const ClientButtondriver *client) {
                         const auto *socket = client->findChild<QTcpSocket *>();
                         return socket && socket->peerPort() == port;
                       });
  }

  /// The client at which the server has ended the connection.
  static bool hasEnded(const QTcpSocket &socket) {
    return process_events_until([&] { return socket.state() == QAbstractSocket::UnconnectedState; });
  }

  std::ptrdiff_t logged(const char *text) {
    const std::vector<std::string> lines = log.take();
    return std::count_if(lines.begin(), lines.end(),
                         [text](const std::string &line) { return line.find(text) != std::string::npos; });
  }

  test::CapturedLog log;
  test::RememberingSetter setter;
  Connector connector{QString(), 0, &setter, places};
  std::vector<std::unique_ptr<QTcpSocket>> sockets;
};

TEST_F(PlacesTest, a_newcomer_gets_that_of_whom_has_been_silent_longest_and_never_sent_a_message) {
  add(true);
  QTcpSocket &first_silent = add(false);
  QTcpSocket &half_a_frame = add(false);
  add(true);
  QTcpSocket &last_silent = add(false);
  first_silent.write("ab"); // bytes are no silence, and no message
  ASSERT_TRUE(process_events_until([&] {
    return std::any_of(connector.clients().begin(), connector.clients().end(), [](const ClientButtondriver *client) {
      return client->findChild<QTcpSocket *>()->bytesAvailable() == 2;
    });
  }));
  for (QTcpSocket *loser : {&half_a_frame, &last_silent, &first_silent}) {
    add(true);
    EXPECT_TRUE(hasEnded(*loser));
    EXPECT_EQ(connector.clients().size(), places);
    EXPECT_EQ(logged("silent client gives its place to another, descriptor "), 1);
  }
}

TEST_F(PlacesTest, where_all_have_sent_a_message_a_newcomer_is_refused_and_that_is_logged_once) {
  for (std::size_t i = 0; i < places; ++i)
    add(true);
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(hasEnded(*startClient("127.0.0.1")));
  EXPECT_EQ(logged("all places for clients are taken, further ones are refused, places 5 "), 1);
  EXPECT_EQ(connector.clients().size(), places);
  sockets.front()->abort();
  ASSERT_TRUE(process_events_until([&] { return connector.clients().size() == places - 1; }));
  add(true);
  EXPECT_TRUE(hasEnded(*startClient("127.0.0.1")));
  EXPECT_EQ(logged("all places for clients are taken"), 1) << "it is told of again";
}

TEST_F(PlacesTest, an_address_that_has_more_than_half_of_them_gives_one_to_another_address) {
  QTcpSocket &other = add(true, "127.0.0.2");
  add(true, "127.0.0.3");
  QTcpSocket &first = add(true);
  QTcpSocket &second = add(true);
  QTcpSocket &third = add(true);
  first.write(frame(ping)); // now the second one has been silent longest
  ASSERT_TRUE(process_events_until([&] { return setter.delivered == places + 1; }));
  EXPECT_TRUE(hasEnded(*startClient("127.0.0.1"))) << "not to one more of its own";
  add(true, "127.0.0.2");
  EXPECT_TRUE(hasEnded(second));
  EXPECT_TRUE(hasEnded(*startClient("127.0.0.4"))) << "nobody has more than half now";
  for (const QTcpSocket *staying : {&other, &first, &third})
    EXPECT_EQ(staying->state(), QAbstractSocket::ConnectedState);
}

TEST_F(PlacesTest, of_whom_gives_one_up_nothing_more_is_delivered) {
  connector.pauseReading();
  QTcpSocket &silent = add(false);
  silent.write(frame("waits"));
  for (std::size_t i = 1; i < places; ++i)
    add(true);
  add(true);
  EXPECT_TRUE(hasEnded(silent));
  connector.resumeReading();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().size() == places; }));
  EXPECT_EQ(setter.delivered, places);
}

TEST(PossibleConnectionsTest, leave_descriptors_for_everything_else) {
  rlimit usual{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
  struct Row {
    rlim_t descriptors;
    std::size_t connections;
  };
  const Row rows[] = {{40, 20}, {100, 50}, {128, 64}, {500, 436}, {964, 900}, {5000, 900}};
  for (const Row &row : rows) {
    if (row.descriptors > usual.rlim_max)
      continue;
    const rlimit limit{row.descriptors, usual.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(limits::possible_connections(), row.connections) << row.descriptors;
  }
  EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);
}

} // namespace
} // namespace buttondriver
