// SPDX-License-Identifier: Apache-2.0
#include "buttons/logs/null_message_log.h"

#include "support/captured_log.h"
#include "support/event_loop.h"

#include <QEventLoop>

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>
#include <utility>

namespace buttondriver {
namespace {

std::string lines_of(const QByteArray &message) {
  std::string text;
  for (int i = 0; i < message.size(); ++i) {
    char line[40];
    std::snprintf(line, sizeof line, "data[%d] = 0x%x\n", i, unsigned{static_cast<unsigned char>(message.at(i))});
    text += line;
  }
  return text;
}

// Texts of many lines are compared with ==: how they differ would take minutes and gigabytes to find.

/// Bytes of all values.
QByteArray message_of(std::size_t size) {
  QByteArray message(static_cast<int>(size), '\0');
  for (int i = 4; i < message.size(); ++i)
    message[i] = static_cast<char>(i * 7);
  return message;
}

class NullMessageLogTest : public testing::Test {
protected:
  NullMessageLogTest() {
    QObject::connect(&*log, &NullMessageLog::clientWaits,
                     [this](qint32 client) { signals_so_far += "wait " + std::to_string(client) + " "; });
    QObject::connect(&*log, &NullMessageLog::clientGoesOn,
                     [this](qint32 client) { signals_so_far += "go on " + std::to_string(client) + " "; });
    QObject::connect(&*log, &NullMessageLog::backlogFull, [this] { signals_so_far += "full "; });
    QObject::connect(&*log, &NullMessageLog::backlogLow, [this] { signals_so_far += "low "; });
  }

  /// Until all of `expected` is written; false when it is not, or something else is.
  bool process_until(const std::string &expected) {
    std::string written;
    const bool is_enough =
        test::process_events_until([&] { return (written += output.take()).size() >= expected.size(); });
    return is_enough && written == expected;
  }

  test::CapturedOutput output;
  std::optional<NullMessageLog> log{std::in_place};
  std::string signals_so_far;
};

TEST_F(NullMessageLogTest, short_messages_are_written_when_they_come) {
  for (const std::size_t size : {0U, 1U, 4U, 40'000U}) {
    const QByteArray message = message_of(size);
    log->write(message, 1000);
    EXPECT_TRUE(output.take() == lines_of(message)) << size;
  }
  EXPECT_EQ(signals_so_far, "");
}

TEST_F(NullMessageLogTest, a_round_of_the_event_loop_writes_so_much_and_no_more) {
  const QByteArray half = message_of(NullMessageLog::at_once / 2);
  log->write(half, 1000);
  log->write(half, 1000);
  EXPECT_TRUE(output.take() == lines_of(half));
  ASSERT_TRUE(process_until(lines_of(half)));
}

TEST_F(NullMessageLogTest, a_long_message_is_written_in_rounds_of_the_event_loop) {
  const QByteArray message = message_of(3 * NullMessageLog::at_once + 1);
  log->write(message, 1000);
  EXPECT_EQ(output.take(), "");
  ASSERT_TRUE(process_until(lines_of(message)));
  EXPECT_EQ(signals_so_far, "wait 1000 go on 1000 ");
}

TEST_F(NullMessageLogTest, messages_keep_their_order) {
  const QByteArray first = message_of(NullMessageLog::at_once + 1);
  const QByteArray second = message_of(5);
  const QByteArray third = message_of(2 * NullMessageLog::at_once);
  std::string expected;
  for (const QByteArray &message : {first, second, third}) {
    log->write(message, 1000);
    expected += lines_of(message);
  }
  ASSERT_TRUE(process_until(expected));
}

TEST_F(NullMessageLogTest, tells_which_clients_have_to_wait_and_when_they_may_go_on) {
  const QByteArray message = message_of(NullMessageLog::at_once);
  const QByteArray short_message = message_of(1);
  log->write(message, 1000);
  log->write(short_message, 2000);
  log->write(short_message, 1000);
  EXPECT_EQ(signals_so_far, "wait 1000 wait 2000 wait 1000 ");
  signals_so_far.clear();
  ASSERT_TRUE(process_until(lines_of(message) + lines_of(short_message) + lines_of(short_message)));
  EXPECT_EQ(signals_so_far, "go on 2000 go on 1000 ");
}

TEST_F(NullMessageLogTest, finishes_what_a_client_waits_for_at_once_and_no_more) {
  const QByteArray first = message_of(5 * NullMessageLog::at_once + 3);
  const QByteArray second = message_of(NullMessageLog::at_once + 1);
  log->write(first, 1000);
  log->write(second, 2000);
  log->write(first, 3000);
  QCoreApplication::processEvents();
  log->finish(4000);
  std::string written = output.take();
  EXPECT_LT(written.size(), lines_of(first).size());
  signals_so_far.clear();
  log->finish(2000);
  written += output.take();
  EXPECT_TRUE(written == lines_of(first) + lines_of(second));
  EXPECT_EQ(signals_so_far, "go on 1000 go on 2000 ");
  log->finish(3000);
  EXPECT_TRUE(output.take() == lines_of(first));
}

TEST_F(NullMessageLogTest, what_waits_at_its_end_is_written_then) {
  const QByteArray first = message_of(5 * NullMessageLog::at_once + 3);
  log->write(first, 1000);
  log->write(message_of(7), 2000);
  QCoreApplication::processEvents();
  signals_so_far.clear();
  log.reset();
  EXPECT_TRUE(output.take() == lines_of(first) + lines_of(message_of(7)));
  EXPECT_EQ(signals_so_far, "");
}

TEST_F(NullMessageLogTest, tells_when_it_is_full_and_when_it_is_low_again) {
  const QByteArray message = message_of(4 * 1024 * 1024 - 64); // 4 MiB, as a message counts for 64 bytes more
  log->write(message, 1000);
  EXPECT_EQ(signals_so_far, "wait 1000 ");
  log->write(message_of(1), 2000);
  EXPECT_EQ(signals_so_far, "wait 1000 wait 2000 full ");
  signals_so_far.clear();
  // Held up by one who adds a little in each round.
  const auto is_low = [&] { return signals_so_far.find("low") != std::string::npos; };
  for (int i = 0; i < 1000 && !is_low(); ++i) {
    log->write(message_of(NullMessageLog::low_mark / 2), 3000);
    QCoreApplication::processEvents();
  }
  EXPECT_TRUE(is_low()) << signals_so_far;
  output.take();
}

TEST_F(NullMessageLogTest, finishing_ends_the_full_state_too) {
  log->write(message_of(NullMessageLog::full_mark), 1000);
  log->finish(1000);
  EXPECT_EQ(signals_so_far, "wait 1000 full go on 1000 low ");
  output.take();
}

TEST_F(NullMessageLogTest, short_messages_count_for_more_than_their_bytes) {
  log->write(message_of(NullMessageLog::at_once), 1000);
  for (std::size_t i = 0; i < NullMessageLog::full_mark / NullMessageLog::cost_of_a_message; ++i)
    log->write(message_of(1), 1000);
  EXPECT_NE(signals_so_far.find("full"), std::string::npos);
  log->finish(1000);
  output.take();
}

TEST_F(NullMessageLogTest, a_message_without_bytes_never_waits) {
  log->write(message_of(NullMessageLog::at_once), 1000);
  log->write({}, 2000);
  EXPECT_EQ(signals_so_far, "wait 1000 ");
  log->finish(1000);
  output.take();
}

TEST_F(NullMessageLogTest, leaves_the_event_loop_idle_once_all_is_written) {
  log->write(message_of(3 * NullMessageLog::at_once), 1000);
  QEventLoop loop;
  int rounds = 0;
  while (loop.processEvents() && rounds < 1000)
    ++rounds;
  EXPECT_LT(rounds, 1000);
  output.take();
}

TEST_F(NullMessageLogTest, writes_no_further_while_it_is_paused) {
  const QByteArray message = message_of(3 * NullMessageLog::at_once);
  log->write(message, 1000);
  log->pause();
  test::process_ready_events();
  EXPECT_EQ(output.take(), "");
  log->write(message, 2000); // comes too late to wait
  test::process_ready_events();
  EXPECT_EQ(output.take(), "");
  log->resume();
  EXPECT_TRUE(process_until(lines_of(message) + lines_of(message)));
  EXPECT_EQ(signals_so_far, "wait 1000 wait 2000 go on 1000 go on 2000 ");
}

} // namespace
} // namespace buttondriver
