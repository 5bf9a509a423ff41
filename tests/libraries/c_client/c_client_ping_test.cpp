// SPDX-License-Identifier: Apache-2.0
#include "open_client.h"
#include "support/hex.h"

#include <atomic>
#include <csignal>
#include <future>
#include <pthread.h>
#include <thread>

namespace buttondriver::test {
namespace {

const std::string ping = from_hex("00000004 0000000c");
const std::string answer = from_hex("00000004 00000001");

TEST(CClientPingTest, returns_when_its_answer_has_come_and_tells_the_time) {
  ScriptedPeer peer;
  OpenClient client(peer);
  auto asked = std::async(std::launch::async, [&] {
    EXPECT_EQ(peer.read(8), ping);
    peer.write(answer);
  });
  double milliseconds = -1;
  EXPECT_EQ(buttondriver_ping(client.get(), long_ms, &milliseconds), BUTTONDRIVER_OK);
  EXPECT_GT(milliseconds, 0);
  EXPECT_LT(milliseconds, long_ms);
  asked.get();
  EXPECT_TRUE(client.isOpen());
}

TEST(CClientPingTest, takes_an_answer_that_comes_in_pieces) {
  ScriptedPeer peer;
  OpenClient client(peer);
  EXPECT_EQ(buttondriver_ping(client.get(), 1, nullptr), BUTTONDRIVER_TIMED_OUT);
  peer.read(8);
  // Each call reads what is there.
  for (const char byte : answer) {
    peer.write(std::string(1, byte));
    EXPECT_EQ(buttondriver_blackout(client.get(), 0), BUTTONDRIVER_OK);
    peer.read(12);
  }
  auto asked = std::async(std::launch::async, [&] {
    peer.read(8);
    peer.write(answer);
  });
  EXPECT_EQ(buttondriver_ping(client.get(), long_ms, nullptr), BUTTONDRIVER_OK);
  asked.get();
}

std::atomic<int> signals_taken{0};

TEST(CClientPingTest, goes_on_waiting_after_signals) {
  struct sigaction action {};
  struct sigaction former {};
  action.sa_handler = [](int) { ++signals_taken; };
  ASSERT_EQ(::sigaction(SIGUSR1, &action, &former), 0);
  ScriptedPeer peer;
  OpenClient client(peer);
  const pthread_t waiting = ::pthread_self();
  auto asked = std::async(std::launch::async, [&] {
    peer.read(8);
    for (int i = 1; i <= 100; ++i) {
      ::pthread_kill(waiting, SIGUSR1);
      while (signals_taken < i)
        std::this_thread::yield();
    }
    peer.write(answer);
  });
  EXPECT_EQ(buttondriver_ping(client.get(), long_ms, nullptr), BUTTONDRIVER_OK);
  asked.get();
  ASSERT_EQ(::sigaction(SIGUSR1, &former, nullptr), 0);
}

TEST(CClientPingTest, times_out_and_does_not_take_the_late_answer_for_that_of_a_later_ping) {
  ScriptedPeer peer;
  OpenClient client(peer);
  double milliseconds = -1;
  EXPECT_EQ(buttondriver_ping(client.get(), 1, &milliseconds), BUTTONDRIVER_TIMED_OUT);
  EXPECT_EQ(milliseconds, -1);
  EXPECT_EQ(buttondriver_ping(client.get(), 1, nullptr), BUTTONDRIVER_TIMED_OUT);
  EXPECT_EQ(buttondriver_ping(client.get(), 1, nullptr), BUTTONDRIVER_TIMED_OUT);
  ASSERT_TRUE(client.isOpen());
  peer.read(24);
  peer.write(answer + answer);
  EXPECT_EQ(buttondriver_ping(client.get(), 1, nullptr), BUTTONDRIVER_TIMED_OUT);
  peer.write(answer + answer);
  auto asked = std::async(std::launch::async, [&] {
    peer.read(16);
    peer.write(answer);
  });
  EXPECT_EQ(buttondriver_ping(client.get(), long_ms, nullptr), BUTTONDRIVER_OK);
  asked.get();
}

TEST(CClientPingTest, waits_for_the_answers_of_pings_that_were_sent_as_messages) {
  ScriptedPeer peer;
  OpenClient client(peer);
  char room[4];
  buttondriver_message message{room, sizeof room, 0};
  ASSERT_EQ(buttondriver_encode_ping(&message), BUTTONDRIVER_OK);
  EXPECT_EQ(buttondriver_send(client.get(), &message), BUTTONDRIVER_OK);
  peer.read(8);
  peer.write(answer);
  EXPECT_EQ(buttondriver_ping(client.get(), 1, nullptr), BUTTONDRIVER_TIMED_OUT);
  EXPECT_TRUE(client.isOpen());
}

TEST(CClientPingTest, is_refused_by_a_time_that_is_none) {
  ScriptedPeer peer;
  OpenClient client(peer);
  EXPECT_EQ(buttondriver_ping(client.get(), 0, nullptr), BUTTONDRIVER_OUT_OF_RANGE);
  EXPECT_EQ(buttondriver_ping(client.get(), -1, nullptr), BUTTONDRIVER_OUT_OF_RANGE);
  EXPECT_EQ(buttondriver_ping(nullptr, 1, nullptr), BUTTONDRIVER_NULL_POINTER);
  buttondriver_client closed{};
  EXPECT_EQ(buttondriver_ping(&closed, 1, nullptr), BUTTONDRIVER_NOT_CONNECTED);
}

struct AnswerRow {
  const char *name;
  const char *hex; ///< after the ping
};

void PrintTo(const AnswerRow &row, std::ostream *stream) { *stream << row.name; }

class CClientStrangeAnswerTest : public testing::TestWithParam<AnswerRow> {};

TEST_P(CClientStrangeAnswerTest, closes_the_client) {
  ScriptedPeer peer;
  OpenClient client(peer);
  auto asked = std::async(std::launch::async, [&] {
    peer.read(8);
    peer.write(from_hex(GetParam().hex));
  });
  EXPECT_EQ(buttondriver_ping(client.get(), long_ms, nullptr), BUTTONDRIVER_STRANGE_ANSWER);
  asked.get();
  EXPECT_FALSE(client.isOpen());
  EXPECT_EQ(buttondriver_ping(client.get(), 1, nullptr), BUTTONDRIVER_NOT_CONNECTED);
}

INSTANTIATE_TEST_SUITE_P(Answers, CClientStrangeAnswerTest,
                         testing::Values(AnswerRow{"another_length", "00000005 00000001"},
                                         AnswerRow{"another_opcode", "00000004 00000002"},
                                         AnswerRow{"text", "5353482d322e302d"},
                                         AnswerRow{"one_too_many", "00000004 00000001 00000004 00000001"}),
                         [](const auto &row) { return row.param.name; });

TEST(CClientPingTest, tells_that_the_daemon_went_away_instead_of_answering) {
  ScriptedPeer peer;
  OpenClient client(peer);
  auto asked = std::async(std::launch::async, [&] {
    peer.read(8);
    peer.hang_up();
  });
  EXPECT_EQ(buttondriver_ping(client.get(), long_ms, nullptr), BUTTONDRIVER_CONNECTION_LOST);
  asked.get();
  EXPECT_FALSE(client.isOpen());
}

} // namespace
} // namespace buttondriver::test
