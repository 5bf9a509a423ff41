// SPDX-License-Identifier: Apache-2.0
#include "event_client_fixture.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>

namespace buttondriver::test {
namespace {

using Door = ScriptedPeer::Door;

class EventClientConnectionTest : public EventClientTest {
protected:
  static std::string server(const ScriptedPeer &peer) { return "127.0.0.1:" + std::to_string(peer.port()); }
};

TEST_F(EventClientConnectionTest, default_server_is_port_3003_of_this_machine) {
  static sockaddr_in asked;
  EventClientCalls calls = observed_calls();
  calls.connect = [](int, const sockaddr *address, socklen_t) {
    asked = *reinterpret_cast<const sockaddr_in *>(address);
    errno = ECONNREFUSED;
    return -1;
  };
  replace_event_client_calls(calls);
  EXPECT_EQ(btc_connect(), 0);
  EXPECT_EQ(asked.sin_family, AF_INET);
  EXPECT_EQ(ntohl(asked.sin_addr.s_addr), 0x7F000001U);
  EXPECT_EQ(ntohs(asked.sin_port), 3003);
}

TEST_F(EventClientConnectionTest, attempt_after_999_ms_waits_and_after_1000_ms_is_made) {
  ScriptedPeer peer(Door::closed);
  EXPECT_EQ(btc_set_server(local_host, peer.port()), 0);
  EXPECT_EQ(connects(), 1);
  peer.open_door();
  advance_ms(999);
  EXPECT_EQ(btc_connect(), 0);
  EXPECT_EQ(connects(), 1);
  advance_ms(1);
  EXPECT_EQ(btc_connect(), 1);
  EXPECT_EQ(connects(), 2);
}

TEST_F(EventClientConnectionTest, attempt_that_was_put_off_does_not_put_off_the_next) {
  ScriptedPeer peer(Door::closed);
  EXPECT_EQ(btc_set_server(local_host, peer.port()), 0);
  for (int i = 0; i < 9; ++i) {
    advance_ms(100);
    EXPECT_EQ(btc_reconfig(), 0);
  }
  EXPECT_EQ(connects(), 1);
  advance_ms(100);
  EXPECT_EQ(btc_reconfig(), 0);
  EXPECT_EQ(connects(), 2);
}

TEST_F(EventClientConnectionTest, clock_that_is_set_back_puts_off_the_next_attempt) {
  ScriptedPeer peer(Door::closed);
  EXPECT_EQ(btc_set_server(local_host, peer.port()), 0);
  peer.open_door();
  advance_ms(-2000);
  EXPECT_EQ(btc_connect(), 0);
  advance_ms(3000);
  EXPECT_EQ(btc_connect(), 1);
}

TEST_F(EventClientConnectionTest, says_nothing_unless_verbose) {
  ScriptedPeer peer(Door::closed);
  EXPECT_EQ(printed_by([&] {
              EXPECT_EQ(btc_set_server(local_host, peer.port()), 0);
              EXPECT_EQ(btc_reconfig(), 0);
              peer.open_door();
              advance_ms(1000);
              EXPECT_EQ(btc_reconfig(), 1);
            }),
            "");
}

TEST_F(EventClientConnectionTest, says_every_step_when_verbose) {
  ScriptedPeer peer(Door::closed);
  ASSERT_EQ(btc_set_server(local_host, peer.port()), 0);
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_verbose_on(), 0); }),
            "connect later, since last attempt elapsed only 0.00 ms\n could not connect\n");
  advance_ms(999);
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_connect(), 0); }),
            "connect later, since last attempt elapsed only 999.00 ms\n");
  advance_ms(1);
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_reconfig(), 0); }), "try to connect to " + server(peer) +
                                                                  "\nbtc failed to connect to server " + server(peer) +
                                                                  "\n could not connect\n");
  peer.open_door();
  advance_ms(1000);
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_reconfig(), 1); }),
            "try to connect to " + server(peer) + "\nbtc connected to server " + server(peer) + "\n");
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_parameter_off(), 1); }), "");
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_connect(), 1); }), "");
}

TEST_F(EventClientConnectionTest, server_named_while_connected_is_used_after_the_connection_is_lost) {
  ScriptedPeer first;
  ScriptedPeer second;
  meet(first);
  EXPECT_EQ(btc_set_server(local_host, second.port()), 1);
  EXPECT_EQ(btc_reconfig(), 1);
  EXPECT_EQ(to_hex(first.read(12)), golden("00000008 0000000a 00000000"));
  EXPECT_FALSE(second.has_caller());
}

TEST_F(EventClientConnectionTest, at_most_256_characters_of_the_host_are_kept) {
  const auto attempt_with = [](const std::string &host) {
    advance_ms(1000);
    return printed_by([&host] { EXPECT_EQ(btc_set_server(host.c_str(), 1), 0); });
  };
  ScriptedPeer closed(Door::closed);
  btc_set_server(local_host, closed.port());
  printed_by(btc_verbose_on);
  for (const std::size_t length : {255U, 256U, 257U, 300U}) {
    const std::string kept(std::min<std::size_t>(length, 256), 'x');
    EXPECT_EQ(attempt_with(std::string(length, 'x')),
              "try to connect to " + kept + ":1\nbtc failed to connect to server " + kept + ":1\n");
  }
  EXPECT_EQ(attempt_with("short"), "try to connect to short:1\nbtc failed to connect to server short:1\n");
}

TEST_F(EventClientConnectionTest, server_that_is_no_address_is_not_asked) {
  struct Row {
    const char *host;
    std::int32_t port;
    const char *named;
  };
  const Row rows[] = {
      {"localhost", 3003, "localhost:3003"},
      {"", 3003, ":3003"},
      {nullptr, 3003, ":3003"},
      {"127.0.0.256", 3003, "127.0.0.256:3003"},
  };
  ScriptedPeer closed(Door::closed);
  btc_set_server(local_host, closed.port());
  printed_by(btc_verbose_on);
  const int before = connects();
  for (const Row &row : rows) {
    advance_ms(1000);
    EXPECT_EQ(printed_by([&row] { EXPECT_EQ(btc_set_server(row.host, row.port), 0); }),
              std::string("try to connect to ") + row.named + "\nbtc failed to connect to server " + row.named + "\n");
  }
  EXPECT_EQ(connects(), before);
}

TEST_F(EventClientConnectionTest, of_a_port_out_of_range_the_low_16_bits_are_asked) {
  static int asked;
  struct Row {
    std::int32_t port;
    int asked;
    const char *named;
  };
  const Row rows[] = {
      {0, 0, "0"}, {65535, 65535, "65535"}, {65536, 0, "65536"}, {-1, 65535, "-1"}, {0x7FFF0BBB, 3003, "2147421115"},
  };
  EventClientCalls calls = observed_calls();
  calls.connect = [](int, const sockaddr *address, socklen_t) {
    asked = ntohs(reinterpret_cast<const sockaddr_in *>(address)->sin_port);
    errno = ECONNREFUSED;
    return -1;
  };
  replace_event_client_calls(calls);
  printed_by(btc_verbose_on);
  for (const Row &row : rows) {
    advance_ms(1000);
    asked = -1;
    const std::string server = std::string("127.0.0.1:") + row.named;
    EXPECT_EQ(printed_by([&row] { EXPECT_EQ(btc_set_server(local_host, row.port), 0); }),
              "try to connect to " + server + "\nbtc failed to connect to server " + server + "\n");
    EXPECT_EQ(asked, row.asked) << row.named;
  }
}

TEST_F(EventClientConnectionTest, its_socket_waits_3_seconds_sends_at_once_and_closes_on_exec) {
  static int connected;
  EventClientCalls calls = observed_calls();
  calls.connect = [](int descriptor, const sockaddr *address, socklen_t size) {
    connected = descriptor;
    return ::connect(descriptor, address, size);
  };
  replace_event_client_calls(calls);
  ScriptedPeer peer;
  meet(peer);
  timeval limit{};
  socklen_t size = sizeof limit;
  ASSERT_EQ(::getsockopt(connected, SOL_SOCKET, SO_SNDTIMEO, &limit, &size), 0);
  EXPECT_EQ(limit.tv_sec, 3);
  EXPECT_EQ(limit.tv_usec, 0);
  int without_delay = 0;
  size = sizeof without_delay;
  ASSERT_EQ(::getsockopt(connected, IPPROTO_TCP, TCP_NODELAY, &without_delay, &size), 0);
  EXPECT_NE(without_delay, 0);
  EXPECT_NE(::fcntl(connected, F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(EventClientConnectionTest, attempt_without_a_socket_fails_and_the_next_one_opens_it) {
  ScriptedPeer peer;
  EventClientCalls calls = observed_calls();
  calls.socket = [](int, int, int) {
    errno = EMFILE;
    return -1;
  };
  replace_event_client_calls(calls);
  EXPECT_EQ(btc_set_server(local_host, peer.port()), 0);
  replace_event_client_calls(observed_calls());
  advance_ms(1000);
  EXPECT_EQ(btc_connect(), 1);
  EXPECT_TRUE(peer.has_caller());
}

TEST_F(EventClientConnectionTest, refused_attempt_keeps_its_socket_for_the_next) {
  static int sockets;
  sockets = 0;
  EventClientCalls calls = observed_calls();
  calls.socket = [](int domain, int type, int protocol) {
    ++sockets;
    return ::socket(domain, type, protocol);
  };
  replace_event_client_calls(calls);
  ScriptedPeer peer(Door::closed);
  EXPECT_EQ(btc_set_server(local_host, peer.port()), 0);
  advance_ms(1000);
  EXPECT_EQ(btc_connect(), 0);
  peer.open_door();
  advance_ms(1000);
  EXPECT_EQ(btc_connect(), 1);
  EXPECT_EQ(sockets, 1);
}

TEST_F(EventClientConnectionTest, interrupted_connect_is_repeated) {
  static int interruptions;
  interruptions = 2;
  EventClientCalls calls = observed_calls();
  calls.connect = [](int descriptor, const sockaddr *address, socklen_t size) {
    if (interruptions-- > 0) {
      errno = EINTR;
      return -1;
    }
    return ::connect(descriptor, address, size);
  };
  replace_event_client_calls(calls);
  ScriptedPeer peer;
  EXPECT_EQ(btc_set_server(local_host, peer.port()), 1);
  EXPECT_TRUE(peer.has_caller());
}

TEST_F(EventClientConnectionTest, server_that_does_not_answer_fails_in_bounded_time_and_is_given_up) {
  ScriptedPeer silent(Door::jammed);
  ScriptedPeer other;
  EventClientCalls calls = observed_calls();
  calls.longest_wait_ms = 20;
  replace_event_client_calls(calls);
  EXPECT_EQ(btc_set_server(local_host, silent.port()), 0);
  EXPECT_EQ(connects(), 1);
  advance_ms(1000);
  EXPECT_EQ(btc_set_server(local_host, other.port()), 1);
  EXPECT_EQ(btc_reconfig(), 1);
  other.accept();
  EXPECT_EQ(to_hex(other.read(12)), golden("00000008 0000000a 00000000"));
}

TEST_F(EventClientConnectionTest, attempt_that_the_system_goes_on_with_is_given_up_whatever_the_system_calls_it) {
  static int reported;
  for (const int error : {EINPROGRESS, EALREADY, EINTR}) {
    SCOPED_TRACE(error);
    reported = error;
    start_anew();
    ScriptedPeer silent(Door::jammed);
    ScriptedPeer other;
    EventClientCalls calls = observed_calls();
    calls.longest_wait_ms = 20;
    calls.connect = [](int descriptor, const sockaddr *address, socklen_t size) {
      const int result = ::connect(descriptor, address, size);
      errno = reported;
      return result;
    };
    replace_event_client_calls(calls);
    EXPECT_EQ(btc_set_server(local_host, silent.port()), 0);
    advance_ms(1000);
    EXPECT_EQ(btc_set_server(local_host, other.port()), 1);
    EXPECT_TRUE(other.has_caller());
  }
}

} // namespace
} // namespace buttondriver::test
