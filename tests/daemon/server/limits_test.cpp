// SPDX-License-Identifier: Apache-2.0
// What clients can make the server hold.

#include "daemon/server/server_fixture.h"
#include "files/owned_descriptor.h"
#include "server/limits.h"

#include <QAbstractEventDispatcher>

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

TEST_F(LimitsTest, a_frame_of_16_mib_passes_and_a_longer_one_is_skipped_and_its_connection_goes_on) {
  const auto client = connectClient();
  const QByteArray largest(limits::largest_frame, 'x');
  client->write(frame(largest) + frame("after it"));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 2; }, std::chrono::seconds(60)));
  EXPECT_EQ(setter.messages()[0].size(), largest.size());

  setter.forget();
  client->write(frame("before it") + QByteArray::fromHex("01000001"));
  for (int i = 0; i < 16; ++i)
    client->write(QByteArray(1024 * 1024, 'y'));
  client->write("y" + frame("after it"));
  ASSERT_TRUE(process_events_until(
      [&] {
        EXPECT_LE(held(), limits::read_ahead);
        return delivered() == 2;
      },
      std::chrono::seconds(60)));
  EXPECT_THAT(setter.messages(), testing::ElementsAre("before it", "after it"));
  const std::vector<std::string> lines = log.take();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string &line) { return line.find("frame too large") != std::string::npos; }),
            1);
  EXPECT_THAT(lines, Contains(HasSubstr("size 16777217 ")));
  client->abort();
  EXPECT_TRUE(process_events_until([&] { return connector.clients().empty(); }));
}

TEST_F(LimitsTest, who_announces_large_frames_and_dallies_keeps_nobody_from_sending_one) {
  std::vector<std::unique_ptr<QTcpSocket>> dallying;
  // Together they announce nearly ten times what there is, and send a little of it.
  for (int i = 0; i < 40; ++i) {
    dallying.push_back(connectClient());
    dallying.back()->write(QByteArray::fromHex("00fffff0") + QByteArray(1000, 'h'));
  }
  ASSERT_TRUE(process_events_until([&] { return held() == 40 * 1004; }));
  const auto other = connectClient();
  const QByteArray large(limits::largest_frame, 'w');
  other->write(frame(large));
  ASSERT_TRUE(process_events_until([&] { return delivered() == 1; }, std::chrono::seconds(60)));
  EXPECT_EQ(setter.messages()[0], large);
}

TEST_F(LimitsTest, large_frames_that_grow_together_share_the_budget_and_all_arrive) {
  std::vector<std::unique_ptr<QTcpSocket>> clients;
  const QByteArray large(limits::largest_frame, 'w');
  for (int i = 0; i < 6; ++i) { // half as much again as there is
    clients.push_back(connectClient());
    clients.back()->write(frame(large));
  }
  qint64 most_held = 0;
  ASSERT_TRUE(process_events_until(
      [&] {
        most_held = std::max(most_held, held());
        setter.calls.clear();
        return delivered() == 6;
      },
      std::chrono::seconds(60)));
  EXPECT_LE(most_held, limits::large_frames + 6 * limits::read_ahead);
}

TEST_F(LimitsTest, large_frames_one_after_another_give_back_what_they_took) {
  const auto client = connectClient();
  for (int i = 0; i < 8; ++i) { // twice what there is
    client->write(frame(QByteArray(limits::largest_frame, 'w')));
    ASSERT_TRUE(
        process_events_until([&] { return delivered() == static_cast<std::size_t>(i + 1); }, std::chrono::seconds(60)))
        << i;
    setter.calls.clear();
  }
}

TEST_F(LimitsTest, a_client_that_does_not_read_its_answers_is_served_all_the_same) {
  setter.answer = QByteArray(1000, 'a');
  const auto client = connectClient();
  client->setReadBufferSize(1); // leaves the answers with the system, and soon with the server
  constexpr std::size_t count = 50'000;
  client->write(frame(ping).repeated(static_cast<int>(count)));
  ASSERT_TRUE(process_events_until(
      [&] {
        setter.calls.clear();
        return delivered() == count;
      },
      std::chrono::seconds(30)));
  // It closes its side, and reads at last.
  ::shutdown(static_cast<int>(client->socketDescriptor()), SHUT_WR);
  settle();
  client->setReadBufferSize(0);
  std::size_t bytes = 0;
  ASSERT_TRUE(process_events_until(
      [&] {
        bytes += static_cast<std::size_t>(client->readAll().size());
        return connector.clients().empty() && client->state() == QAbstractSocket::UnconnectedState;
      },
      std::chrono::seconds(30)));
  EXPECT_EQ(bytes + static_cast<std::size_t>(client->readAll().size()), count * 1000);
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

TEST_F(LimitsTest, clients_that_the_system_refuses_are_accepted_later_and_keep_the_event_loop_at_rest_till_then) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the sanitizer looks at memory through descriptors of its own, and takes their lack for a fault";
#endif
  std::vector<OwnedDescriptor> sockets;
  for (int i = 0; i < 3; ++i)
    sockets.emplace_back(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(connector.port());
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  {
    const NoMoreDescriptors none;
    for (const OwnedDescriptor &socket : sockets) {
      ASSERT_EQ(::connect(socket.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
      int rounds = 0; // of the event loop that had something to do
      while (rounds < 100 && QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents))
        ++rounds;
      EXPECT_LT(rounds, 100);
    }
  }
  EXPECT_TRUE(connector.clients().empty());
  connector.resumeReading();
  ASSERT_TRUE(process_events_until([&] { return connector.clients().size() == sockets.size(); }));
}

} // namespace
} // namespace buttondriver
