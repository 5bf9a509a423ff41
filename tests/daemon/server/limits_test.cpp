// SPDX-License-Identifier: Apache-2.0
// What clients can make the server hold.

#include "daemon/server/server_fixture.h"
#include "files/owned_descriptor.h"
#include "server/limits.h"

#include <QElapsedTimer>

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

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

class LimitsTest : public test::ServerFixture {};

TEST_F(LimitsTest, a_frame_of_16_mib_passes_and_a_longer_one_blocks_its_connection_for_good) {
  const auto client = connectClient();
  const QByteArray largest(limits::largest_frame, 'x');
  client->write(frame(largest) + frame("after it"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 2; }, std::chrono::seconds(60)));
  EXPECT_EQ(setter.messages()[0].size(), largest.size());

  setter.forget();
  client->write(QByteArray::fromHex("01000001"));
  for (int i = 0; i < 32; ++i)
    client->write(QByteArray(1024 * 1024, 'y'));
  client->write(frame("never delivered"));
  ASSERT_TRUE(process_events_until(
      [&] {
        EXPECT_LE(held(), limits::read_ahead);
        return client->bytesToWrite() == 0;
      },
      std::chrono::seconds(60)));
  const auto other = connectClient();
  other->write(frame("from another"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1; }));
  EXPECT_EQ(setter.messages()[0], "from another");
  const std::vector<std::string> lines = log.take();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string &line) { return line.find("frame too large") != std::string::npos; }),
            1);
  EXPECT_THAT(lines, Contains(HasSubstr("size 16777217 ")));
  client->abort();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().size() == 1; }));
}

TEST_F(LimitsTest, large_frames_share_a_budget_and_wait_for_each_other) {
  std::vector<std::unique_ptr<QTcpSocket>> holders;
  // Each announces nearly 16 MiB and sends a little of it: four of them use the budget up.
  for (int i = 0; i < 4; ++i) {
    holders.push_back(connectClient());
    holders.back()->write(QByteArray::fromHex("00fffff0") + QByteArray(1000, 'h'));
  }
  const auto waiting = connectClient();
  const QByteArray large(200'000, 'w');
  ASSERT_TRUE(process_events_until([&] { return held() >= 4 * 1004; }));
  waiting->write(frame(large));
  // Small messages of others pass all the same.
  const auto small = connectClient();
  small->write(frame("small"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1; }));
  ASSERT_TRUE(process_events_until([&] { return held() >= 4 * 1004 + limits::read_ahead; }));
  EXPECT_EQ(delivered(), 1U);
  holders.pop_back();
  ASSERT_TRUE(process_events_until([&] { return delivered() == 2; }));
  EXPECT_EQ(setter.messages()[1], large);
}

TEST_F(LimitsTest, a_client_that_does_not_read_its_answers_is_not_read_from) {
  setter.answer = QByteArray(100'000, 'a');
  const auto client = connectClient();
  client->setReadBufferSize(1); // leaves the answers with the system, and soon with the server
  QByteArray pings;
  for (int i = 0; i < 2000; ++i)
    pings += frame(ping);
  client->write(pings);
  const auto server_side = connector.clients().front()->findChild<QTcpSocket *>();
  ASSERT_TRUE(process_events_until([&] { return server_side->bytesToWrite() > limits::unread_answers; }));
  const std::size_t stopped_at = delivered();
  EXPECT_LT(stopped_at, 2000U);
  const auto turns_answers = static_cast<qint64>(limits::messages_per_turn) * setter.answer.size();
  EXPECT_LE(server_side->bytesToWrite(), limits::unread_answers + turns_answers);
  // Others are served meanwhile, and nothing more of this one is.
  setter.answer.clear();
  const auto other = connectClient();
  other->write(frame("other"));
  ASSERT_TRUE(process_events_until([&] { return delivered() > stopped_at; }));
  EXPECT_EQ(delivered(), stopped_at + 1);
  client->setReadBufferSize(0);
  ASSERT_TRUE(process_events_until([&] {
    client->readAll();
    return delivered() == 2001;
  }));
}

TEST_F(LimitsTest, a_client_whose_answers_wait_is_read_ahead_no_further_after_a_turn_with_nothing_to_deliver) {
  setter.answer = QByteArray(100'000, 'a');
  const auto client = connectClient();
  client->setReadBufferSize(1);
  const auto server_side = connector.clients().front()->findChild<QTcpSocket *>();
  // So many that the system does not take all their answers, and all of them read.
  int sent = 0;
  while (server_side->bytesToWrite() <= limits::unread_answers) {
    ++sent;
    client->write(frame(ping));
    ASSERT_TRUE(process_events_until([&] { return delivered() == static_cast<std::size_t>(sent); }));
  }
  ASSERT_EQ(server_side->bytesAvailable(), 0);
  connector.resumeReading(); // gives everybody a turn
  settle();
  client->write(QByteArray(1024 * 1024, 'x'));
  ASSERT_TRUE(process_events_until([&] { return server_side->bytesAvailable() > 0; }));
  settle();
  EXPECT_LE(server_side->bytesAvailable(), limits::read_ahead);
}

/// Whether the process may have so many descriptors open at once.
bool may_open(rlim_t count) {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_max < count)
    return false;
  limit.rlim_cur = std::max(limit.rlim_cur, count);
  return ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

/// While it lives, the system gives this process no further descriptor.
class NoMoreDescriptors {
public:
  NoMoreDescriptors() {
    EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &_usual), 0);
    const OwnedDescriptor next(::dup(STDIN_FILENO));
    EXPECT_EQ(setMost(static_cast<rlim_t>(next.get())), 0);
  }
  ~NoMoreDescriptors() { setMost(_usual.rlim_cur); }
  NoMoreDescriptors(const NoMoreDescriptors &) = delete;
  NoMoreDescriptors &operator=(const NoMoreDescriptors &) = delete;

private:
  int setMost(rlim_t count) {
    rlimit limit = _usual;
    limit.rlim_cur = count;
    return ::setrlimit(RLIMIT_NOFILE, &limit);
  }

  rlimit _usual{};
};

TEST_F(LimitsTest, a_client_that_the_system_refused_is_accepted_after_a_pause_that_nothing_shortens) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the sanitizer looks at memory through descriptors of its own, and takes their lack for a fault";
#endif
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(connector.port());
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const OwnedDescriptor client(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  QElapsedTimer since_refusal;
  {
    const NoMoreDescriptors none;
    ASSERT_EQ(::connect(client.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    since_refusal.start();
    test::process_ready_events();
  }
  EXPECT_TRUE(connector.clients().empty());
  connector.resumeReading();
  ASSERT_TRUE(process_events_until([&] { return connector.clients().size() == 1; }));
  // A timer may come a little too early.
  EXPECT_GE(since_refusal.elapsed(), limits::accept_retry_ms * 9 / 10);
}

TEST_F(LimitsTest, clients_beyond_the_limit_wait_until_others_end) {
  if (!may_open(2 * limits::connections + 100))
    GTEST_SKIP() << "not enough descriptors for this test";
  std::vector<std::unique_ptr<QTcpSocket>> sockets;
  for (std::size_t i = 0; i < limits::connections; ++i)
    sockets.push_back(connectClient());
  for (std::size_t i = 0; i < 5; ++i) {
    sockets.push_back(std::make_unique<QTcpSocket>());
    sockets.back()->connectToHost(QHostAddress::LocalHost, connector.port());
    ASSERT_TRUE(process_events_until([&] { return sockets.back()->state() == QAbstractSocket::ConnectedState; }));
  }
  settle();
  EXPECT_EQ(connector.clients().size(), limits::connections);
  // Of those that wait one has something to send, one gives up, and one has sent something and gives up.
  sockets[limits::connections]->write(frame("patience"));
  sockets[limits::connections + 1]->abort();
  sockets[limits::connections + 2]->write(frame("patience"));
  ASSERT_TRUE(process_events_until([&] { return sockets[limits::connections + 2]->bytesToWrite() == 0; }));
  sockets[limits::connections + 2]->abort();
  settle();
  EXPECT_EQ(delivered(), 0U);
  for (std::size_t i = 0; i < 100; ++i)
    sockets[i]->abort();
  EXPECT_TRUE(process_events_until([&] { return delivered() == 2; }));
  EXPECT_TRUE(process_events_until([&] { return connector.clients().size() == limits::connections + 3 - 100; }));
  sockets.clear();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
}

} // namespace
} // namespace buttondriver
