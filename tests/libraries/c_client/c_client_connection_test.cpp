// SPDX-License-Identifier: Apache-2.0
#include "open_client.h"
#include "support/hex.h"

#include <cerrno>
#include <future>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>

namespace buttondriver::test {
namespace {

/// How long the kernel may take to move on what it has.
constexpr int settled_after_ms = 100;

int descriptor_of(OpenClient &client) { return client.get()->place - 1; }

TEST(CClientConnectionTest, is_refused_by_a_port_where_nobody_listens) {
  const ScriptedPeer peer(ScriptedPeer::Door::closed);
  buttondriver_client client{};
  errno = 0;
  EXPECT_EQ(buttondriver_open(&client, "127.0.0.1", peer.port(), long_ms), BUTTONDRIVER_CANNOT_CONNECT);
  EXPECT_EQ(errno, ECONNREFUSED);
  EXPECT_EQ(buttondriver_is_open(&client), 0);
  EXPECT_EQ(buttondriver_led(&client, 5, BUTTONDRIVER_ON), BUTTONDRIVER_NOT_CONNECTED);
}

TEST(CClientConnectionTest, is_refused_by_an_address_that_cannot_be_reached) {
  buttondriver_client client{};
  errno = 0;
  EXPECT_EQ(buttondriver_open(&client, "255.255.255.255", 3003, long_ms), BUTTONDRIVER_CANNOT_CONNECT);
  EXPECT_NE(errno, 0);
}

TEST(CClientConnectionTest, fails_where_the_process_can_open_nothing_more) {
  rlimit usual{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
  rlimit none = usual;
  none.rlim_cur = 0;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  buttondriver_client client{};
  errno = 0;
  const buttondriver_result result = buttondriver_open(&client, "127.0.0.1", 3003, long_ms);
  const int error = errno;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);
  EXPECT_EQ(result, BUTTONDRIVER_CANNOT_CONNECT);
  EXPECT_EQ(error, EMFILE);
}

TEST(CClientConnectionTest, times_out_where_nobody_answers) {
  const ScriptedPeer peer(ScriptedPeer::Door::jammed);
  buttondriver_client client{};
  EXPECT_EQ(buttondriver_open(&client, "127.0.0.1", peer.port(), 20), BUTTONDRIVER_TIMED_OUT);
  EXPECT_EQ(buttondriver_is_open(&client), 0);
}

struct OpeningRow {
  const char *name;
  const char *host;
  int port;
  int timeout_ms;
  buttondriver_result result;
};

void PrintTo(const OpeningRow &row, std::ostream *stream) { *stream << row.name; }

class CClientOpeningTest : public testing::TestWithParam<OpeningRow> {};

TEST_P(CClientOpeningTest, is_refused_and_leaves_a_closed_client) {
  // As if it had not been initialised.
  buttondriver_client client{77, -1, 3, 100, {}};
  const OpeningRow &row = GetParam();
  EXPECT_EQ(buttondriver_open(&client, row.host, row.port, row.timeout_ms), row.result);
  EXPECT_EQ(buttondriver_is_open(&client), 0);
}

INSTANTIATE_TEST_SUITE_P(Openings, CClientOpeningTest,
                         testing::Values(OpeningRow{"null_host", nullptr, 3003, 1, BUTTONDRIVER_NULL_POINTER},
                                         OpeningRow{"empty_host", "", 3003, 1, BUTTONDRIVER_BAD_ADDRESS},
                                         OpeningRow{"name", "localhost", 3003, 1, BUTTONDRIVER_BAD_ADDRESS},
                                         OpeningRow{"short_address", "127.1", 3003, 1, BUTTONDRIVER_BAD_ADDRESS},
                                         OpeningRow{"port_0", "127.0.0.1", 0, 1, BUTTONDRIVER_BAD_ADDRESS},
                                         OpeningRow{"port_minus_1", "127.0.0.1", -1, 1, BUTTONDRIVER_BAD_ADDRESS},
                                         OpeningRow{"port_65536", "127.0.0.1", 65536, 1, BUTTONDRIVER_BAD_ADDRESS},
                                         OpeningRow{"no_time", "127.0.0.1", 3003, 0, BUTTONDRIVER_OUT_OF_RANGE},
                                         OpeningRow{"negative_time", "127.0.0.1", 3003, -1, BUTTONDRIVER_OUT_OF_RANGE}),
                         [](const auto &row) { return row.param.name; });

TEST(CClientConnectionTest, takes_a_null_client_and_a_closed_one_calmly) {
  EXPECT_EQ(buttondriver_open(nullptr, "127.0.0.1", 3003, 1), BUTTONDRIVER_NULL_POINTER);
  EXPECT_EQ(buttondriver_is_open(nullptr), 0);
  buttondriver_close(nullptr);
  buttondriver_client closed{};
  buttondriver_close(&closed);
  EXPECT_EQ(buttondriver_is_open(&closed), 0);
  char byte = 0;
  const buttondriver_message message{&byte, 1, 1};
  const buttondriver_message missing{nullptr, 1, 1};
  EXPECT_EQ(buttondriver_send(&closed, &message), BUTTONDRIVER_NOT_CONNECTED);
  EXPECT_EQ(buttondriver_send(nullptr, &message), BUTTONDRIVER_NULL_POINTER);
  EXPECT_EQ(buttondriver_send(&closed, nullptr), BUTTONDRIVER_NULL_POINTER);
  EXPECT_EQ(buttondriver_send(&closed, &missing), BUTTONDRIVER_NULL_POINTER);
}

TEST(CClientConnectionTest, sends_no_message_that_the_daemon_would_skip) {
  ScriptedPeer peer;
  OpenClient client(peer);
  std::string bytes(16777217, 'x');
  const buttondriver_message message{bytes.data(), bytes.size(), bytes.size()};
  EXPECT_EQ(buttondriver_send(client.get(), &message), BUTTONDRIVER_OUT_OF_RANGE);
  buttondriver_close(client.get());
  EXPECT_EQ(peer.read_to_end(), "");
}

TEST(CClientConnectionTest, sends_nothing_in_place_of_a_message_that_could_not_be_built) {
  ScriptedPeer peer;
  OpenClient client(peer);
  char byte = 0;
  for (void *bytes : {static_cast<void *>(&byte), static_cast<void *>(nullptr)}) {
    const buttondriver_message message{bytes, 1, 0};
    EXPECT_EQ(buttondriver_send(client.get(), &message), BUTTONDRIVER_OUT_OF_RANGE);
  }
  buttondriver_close(client.get());
  EXPECT_EQ(peer.read_to_end(), "");
}

TEST(CClientConnectionTest, sends_the_longest_message_to_a_peer_that_reads_little_at_a_time) {
  ScriptedPeer peer(ScriptedPeer::Door::open, 2048);
  OpenClient client(peer);
  std::string bytes(16777216, 'x');
  const buttondriver_message message{bytes.data(), bytes.size(), bytes.size()};
  auto received = std::async(std::launch::async, [&] { return peer.read(4 + bytes.size()); });
  EXPECT_EQ(buttondriver_send(client.get(), &message), BUTTONDRIVER_OK);
  EXPECT_TRUE(received.get() == from_hex("01000000") + bytes);
}

TEST(CClientConnectionTest, is_closed_by_a_message_that_could_be_sent_in_part_only) {
  ScriptedPeer peer(ScriptedPeer::Door::open, 2048);
  OpenClient client(peer, 20);
  std::string bytes(16777216, 'x');
  const buttondriver_message message{bytes.data(), bytes.size(), bytes.size()};
  EXPECT_EQ(buttondriver_send(client.get(), &message), BUTTONDRIVER_TIMED_OUT);
  EXPECT_FALSE(client.isOpen());
}

/// Sends as many bytes as the kernel takes at once; how many that were.
std::size_t send_all(int descriptor, std::size_t at_a_time) {
  const std::string bytes(at_a_time, 'f');
  std::size_t sent = 0;
  ssize_t count = 0;
  while ((count = ::send(descriptor, bytes.data(), bytes.size(), MSG_DONTWAIT)) > 0)
    sent += static_cast<std::size_t>(count);
  return sent;
}

/// Fills the kernel's room between a client and a peer that does not read, to the last byte; how many bytes that took.
std::size_t fill(int descriptor) {
  std::size_t filled = 0;
  pollfd place{descriptor, POLLOUT, 0};
  for (std::size_t more = 1; more > 0;) {
    more = send_all(descriptor, 4096) + send_all(descriptor, 1);
    ::poll(&place, 1, settled_after_ms);
    more += send_all(descriptor, 1);
    filled += more;
  }
  return filled;
}

TEST(CClientConnectionTest, is_lost_when_the_daemon_goes_in_the_middle_of_a_message) {
  ScriptedPeer peer(ScriptedPeer::Door::open, 2048);
  OpenClient client(peer);
  std::string bytes(16777216, 'x');
  const buttondriver_message message{bytes.data(), bytes.size(), bytes.size()};
  auto left = std::async(std::launch::async, [&] {
    peer.read(1000);
    peer.hang_up();
  });
  EXPECT_EQ(buttondriver_send(client.get(), &message), BUTTONDRIVER_CONNECTION_LOST);
  left.get();
  EXPECT_FALSE(client.isOpen());
}

TEST(CClientConnectionTest, stays_open_when_nothing_of_a_message_could_be_sent_in_time) {
  ScriptedPeer peer(ScriptedPeer::Door::open, 2048);
  OpenClient client(peer, 20);
  const std::size_t filled = fill(descriptor_of(client));
  EXPECT_EQ(buttondriver_blackout(client.get(), 1), BUTTONDRIVER_TIMED_OUT);
  ASSERT_TRUE(client.isOpen());
  EXPECT_EQ(peer.read(filled), std::string(filled, 'f'));
  EXPECT_EQ(buttondriver_blackout(client.get(), 2), BUTTONDRIVER_OK);
  EXPECT_EQ(peer.read(12), from_hex("00000008 00000010 00000002"));
}

/// Lets the peer hang up, and waits until the end has arrived; that is the kernel's business, without a wait.
void hang_up(ScriptedPeer &peer, OpenClient &client) {
  peer.hang_up();
  pollfd end{descriptor_of(client), POLLIN, 0};
  ASSERT_EQ(::poll(&end, 1, long_ms), 1);
}

TEST(CClientConnectionTest, tells_that_the_daemon_has_gone_and_can_be_opened_again) {
  ScriptedPeer peer;
  OpenClient client(peer);
  hang_up(peer, client);
  EXPECT_EQ(buttondriver_blackout(client.get(), 0), BUTTONDRIVER_CONNECTION_LOST);
  EXPECT_FALSE(client.isOpen());
  EXPECT_EQ(buttondriver_blackout(client.get(), 0), BUTTONDRIVER_NOT_CONNECTED);
  ASSERT_EQ(buttondriver_open(client.get(), "127.0.0.1", peer.port(), long_ms), BUTTONDRIVER_OK);
  peer.accept();
  EXPECT_EQ(buttondriver_blackout(client.get(), 0), BUTTONDRIVER_OK);
  EXPECT_EQ(peer.read(12), from_hex("00000008 00000010 00000000"));
}

TEST(CClientConnectionTest, tells_that_the_daemon_has_gone_without_reading_all) {
  ScriptedPeer peer;
  OpenClient client(peer);
  EXPECT_EQ(buttondriver_blackout(client.get(), 0), BUTTONDRIVER_OK);
  hang_up(peer, client);
  EXPECT_EQ(buttondriver_blackout(client.get(), 0), BUTTONDRIVER_CONNECTION_LOST);
  EXPECT_FALSE(client.isOpen());
}

TEST(CClientConnectionTest, is_one_of_several) {
  ScriptedPeer first_peer;
  ScriptedPeer second_peer;
  OpenClient first(first_peer);
  OpenClient second(second_peer);
  EXPECT_EQ(buttondriver_blackout(first.get(), 1), BUTTONDRIVER_OK);
  EXPECT_EQ(buttondriver_blackout(second.get(), 2), BUTTONDRIVER_OK);
  EXPECT_EQ(first_peer.read(12), from_hex("00000008 00000010 00000001"));
  EXPECT_EQ(second_peer.read(12), from_hex("00000008 00000010 00000002"));
}

} // namespace
} // namespace buttondriver::test
