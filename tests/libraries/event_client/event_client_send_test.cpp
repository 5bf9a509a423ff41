// SPDX-License-Identifier: Apache-2.0
#include "event_client_fixture.h"

#include <cerrno>
#include <poll.h>
#include <utility>
#include <vector>

namespace buttondriver::test {
namespace {

/// How the n-th send of the client ends; what is not listed goes to the system.
struct SendResult {
  ssize_t result;
  int error;
};

struct SendCall {
  std::size_t count;
  int flags;
};

class EventClientSendTest : public EventClientTest {
protected:
  EventClientSendTest() {
    _planned.clear();
    _calls.clear();
    _descriptor = -1;
  }

  static EventClientCalls calls_with_planned_sends() {
    EventClientCalls calls = observed_calls();
    calls.send = [](int descriptor, const void *bytes, std::size_t count, int flags) -> ssize_t {
      _descriptor = descriptor;
      _calls.push_back({count, flags});
      if (_calls.size() > _planned.size())
        return ::send(descriptor, bytes, count, flags);
      errno = _planned[_calls.size() - 1].error;
      return _planned[_calls.size() - 1].result;
    };
    return calls;
  }

  /// Connects, verbose, and plans the results of the sends from there on.
  static void meet_and_plan(ScriptedPeer &peer, std::vector<SendResult> planned) {
    meet(peer);
    ASSERT_EQ(btc_verbose_on(), 1);
    peer.read(16);
    _planned = std::move(planned);
    replace_event_client_calls(calls_with_planned_sends());
  }

  /// Waits until the kernel has noted that the peer is gone for good.
  static void wait_for_reset(int descriptor) {
    pollfd wanted{descriptor, 0, 0};
    ASSERT_EQ(::poll(&wanted, 1, 10000), 1);
  }

  static inline std::vector<SendResult> _planned;
  static inline std::vector<SendCall> _calls;
  static inline int _descriptor = -1;
};

TEST_F(EventClientSendTest, length_and_message_are_sent_apart_without_the_broken_pipe_signal) {
  ScriptedPeer peer;
  meet_and_plan(peer, {});
  EXPECT_EQ(btc_reconfig(), 1);
  ASSERT_EQ(_calls.size(), 2U);
  EXPECT_EQ(_calls[0].count, 4U);
  EXPECT_EQ(_calls[0].flags, MSG_NOSIGNAL);
  EXPECT_EQ(_calls[1].count, 8U);
  EXPECT_EQ(_calls[1].flags, MSG_NOSIGNAL);
}

TEST_F(EventClientSendTest, incomplete_send_drops_the_connection_and_is_not_completed) {
  struct Row {
    const char *name;
    std::vector<SendResult> planned;
    const char *text;
  };
  const Row rows[] = {
      {"nothing at all", {{-1, EPIPE}, {-1, EPIPE}}, "send failed -2\n"},
      {"peer stalled at the length", {{-1, EAGAIN}, {8, 0}}, "send failed 7\n"},
      {"half the length", {{2, 0}, {8, 0}}, "send failed 10\n"},
      {"nothing of the message", {{4, 0}, {-1, ECONNRESET}}, "send failed 3\n"},
      {"zero bytes of the message", {{4, 0}, {0, 0}}, "send failed 4\n"},
      {"all of the message but one byte", {{4, 0}, {7, 0}}, "send failed 11\n"},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.name);
    start_anew();
    ScriptedPeer peer;
    meet_and_plan(peer, row.planned);
    _calls.clear();
    EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_reconfig(), 0); }), row.text);
    EXPECT_EQ(_calls.size(), 2U);
    EXPECT_EQ(peer.read_to_end(), "");
    EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_connect(), 0); }),
              "connect later, since last attempt elapsed only 0.00 ms\n");
  }
}

TEST_F(EventClientSendTest, failed_send_says_nothing_unless_verbose) {
  ScriptedPeer peer;
  meet(peer);
  _planned = {{-1, EPIPE}};
  replace_event_client_calls(calls_with_planned_sends());
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_reconfig(), 0); }), "");
}

TEST_F(EventClientSendTest, interrupted_send_is_repeated_and_arrives_once) {
  ScriptedPeer peer;
  meet_and_plan(peer, {{-1, EINTR}, {-1, EINTR}});
  EXPECT_EQ(btc_reconfig(), 1);
  reset_event_client();
  EXPECT_EQ(to_hex(peer.read_to_end()), golden("00000008 0000000a 00000000"));
}

TEST_F(EventClientSendTest, endless_interruptions_end_in_a_failed_send) {
  ScriptedPeer peer;
  meet_and_plan(peer, {});
  EventClientCalls calls = observed_calls();
  calls.longest_wait_ms = 1;
  calls.send = [](int, const void *, std::size_t, int) -> ssize_t {
    errno = EINTR;
    return -1;
  };
  replace_event_client_calls(calls);
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_reconfig(), 0); }), "send failed -2\n");
}

TEST_F(EventClientSendTest, peer_that_never_reads_makes_a_send_fail_in_bounded_time) {
  ScriptedPeer peer(ScriptedPeer::Door::open, 2048);
  EventClientCalls calls = observed_calls();
  calls.longest_wait_ms = 20;
  replace_event_client_calls(calls);
  meet(peer);
  const std::string text(1000000, 'w');
  int sent = 0;
  while (sent < 1000 && btc_set_text(uncached_button, text.c_str(), 0))
    ++sent;
  EXPECT_LT(sent, 1000);
  EXPECT_EQ(btc_reconfig(), 0);
}

/// A peer that reads only while its client waits for room, and no more than 160 KB/s are in the three seconds that the
/// client waits.
class SlowPeerTest : public EventClientTest {
protected:
  /// As a send that waits does: it goes on when the kernel finds that there is room, which is long after the first
  /// byte.
  static ssize_t send_while_the_peer_reads(int descriptor, const void *bytes, std::size_t count, int flags) {
    std::size_t sent = 0;
    while (true) {
      const ssize_t now =
          ::send(descriptor, static_cast<const char *>(bytes) + sent, count - sent, flags | MSG_DONTWAIT);
      sent += now > 0 ? static_cast<std::size_t>(now) : 0;
      if (sent == count)
        return static_cast<ssize_t>(sent);
      ++_waits;
      if (!comes_to_have_room(descriptor))
        return sent > 0 ? static_cast<ssize_t>(sent) : -1;
    }
  }

  static inline ScriptedPeer *_peer = nullptr;
  static inline std::size_t _received = 0;
  static inline int _waits = 0;

private:
  static bool comes_to_have_room(int descriptor) {
    constexpr std::size_t step = 8192;
    constexpr std::size_t most = 480'000;
    pollfd room{descriptor, POLLOUT, 0};
    for (std::size_t taken = 0; taken < most; taken += step) {
      if (::poll(&room, 1, 0) == 1)
        return true;
      _received += _peer->read(step).size();
    }
    return ::poll(&room, 1, 100) == 1;
  }
};

TEST_F(SlowPeerTest, gets_every_message_of_a_flood) {
  ScriptedPeer peer(ScriptedPeer::Door::open, 64 * 1024);
  _peer = &peer;
  _received = 0;
  _waits = 0;
  EventClientCalls calls = observed_calls();
  calls.send = send_while_the_peer_reads;
  replace_event_client_calls(calls);
  meet(peer);
  constexpr std::size_t text_size = 4854; // as large as a picture of 40 x 40
  constexpr int messages = 2000;
  const std::string text(text_size, 'p');
  int sent = 0;
  while (sent < messages && btc_set_text(uncached_button, text.c_str(), 0))
    ++sent;
  EXPECT_EQ(sent, messages);
  EXPECT_GT(_waits, 10);
  constexpr std::size_t frame_size = 4 + 16 + text_size + 1;
  peer.read(messages * frame_size - _received);
}

TEST_F(EventClientSendTest, connection_without_a_socket_is_an_invalid_socket) {
  EventClientCalls calls = observed_calls();
  calls.socket = [](int, int, int) { return -1; };
  calls.connect = [](int, const sockaddr *, socklen_t) { return 0; };
  replace_event_client_calls(calls);
  ASSERT_EQ(btc_connect(), 1);
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_reconfig(), 0); }), "");
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_verbose_on(), 0); }), "invalid socket");
}

TEST_F(EventClientSendTest, message_on_a_connection_reset_in_the_middle_of_a_frame_is_lost) {
  ScriptedPeer peer;
  meet_and_plan(peer, {});
  EXPECT_EQ(btc_set_value(1, 2), 1);
  peer.read(6);
  peer.hang_up();
  wait_for_reset(_descriptor);
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_set_value(3, 4), 0); }), "send failed -2\n");
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_set_value(5, 6), 0); }),
            "connect later, since last attempt elapsed only 0.00 ms\n could not connect\n");
  advance_ms(1000);
  EXPECT_EQ(btc_set_value(7, 8), 1);
  peer.accept();
  reset_event_client();
  EXPECT_EQ(to_hex(peer.read_to_end()), golden("0000000c 0000000e 00000007 00000008"));
}

TEST_F(EventClientSendTest, message_on_a_connection_the_peer_has_ended_is_lost) {
  ScriptedPeer peer;
  meet_and_plan(peer, {});
  EventClientCalls calls = observed_calls();
  calls.send = [](int descriptor, const void *bytes, std::size_t count, int flags) {
    const ssize_t sent = ::send(descriptor, bytes, count, flags);
    const int error = errno;
    if (count == 4)
      wait_for_reset(descriptor);
    errno = error;
    return sent;
  };
  replace_event_client_calls(calls);
  peer.hang_up();
  EXPECT_EQ(printed_by([] { EXPECT_EQ(btc_reconfig(), 0); }), "send failed 3\n");
}

TEST_F(EventClientSendTest, cache_outlives_a_failed_send_and_ends_with_the_next_connection) {
  ScriptedPeer peer;
  meet(peer);
  EXPECT_EQ(btc_set_colour(5, 1, 2, 3), 1);
  peer.read(16);
  _planned = {{-1, EPIPE}};
  replace_event_client_calls(calls_with_planned_sends());
  EXPECT_EQ(btc_set_image(3, 7), 0);
  replace_event_client_calls(observed_calls());
  advance_ms(1000);
  EXPECT_EQ(btc_set_colour(5, 1, 2, 3), 0);
  EXPECT_EQ(btc_set_image(3, 7), 0);
  EXPECT_EQ(connects(), 1);
  EXPECT_EQ(btc_reconfig(), 1);
  EXPECT_EQ(connects(), 2);
  peer.accept();
  EXPECT_EQ(btc_set_colour(5, 1, 2, 3), 1);
  EXPECT_EQ(btc_set_image(3, 7), 1);
  reset_event_client();
  EXPECT_EQ(to_hex(peer.read_to_end()), golden("00000008 0000000a 00000000"
                                               "0000000c 00000004 00000005 01020300"
                                               "0000000c 00000007 00000003 00000007"));
}

} // namespace
} // namespace buttondriver::test
