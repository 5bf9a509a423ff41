// SPDX-License-Identifier: Apache-2.0
#include "buttons/null_message_log.h"

#include "support/captured_log.h"
#include "support/event_loop.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

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
    QObject::connect(&log, &NullMessageLog::backlogHigh,
                     [this](qint32 client) { marks += "high " + std::to_string(client) + " "; });
    QObject::connect(&log, &NullMessageLog::backlogFull, [this] { marks += "full "; });
    QObject::connect(&log, &NullMessageLog::backlogLow, [this] { marks += "low "; });
  }

  /// Until all of `expected` is written; false when it is not, or something else is.
  bool process_until(const std::string &expected) {
    std::string written;
    const bool is_enough =
        test::process_events_until([&] { return (written += output.take()).size() >= expected.size(); });
    return is_enough && written == expected;
  }

  test::CapturedOutput output;
  NullMessageLog log;
  std::string marks;
};

TEST_F(NullMessageLogTest, short_messages_are_written_when_they_come) {
  for (const std::size_t size : {0U, 1U, 4U, 40'000U}) {
    const QByteArray message = message_of(size);
    log.write(message, 1000);
    EXPECT_EQ(output.take(), lines_of(message)) << size;
  }
  EXPECT_EQ(marks, "");
}

TEST_F(NullMessageLogTest, a_round_of_the_event_loop_writes_so_much_and_no_more) {
  const QByteArray half = message_of(NullMessageLog::at_once / 2);
  log.write(half, 1000);
  log.write(half, 1000);
  EXPECT_EQ(output.take(), lines_of(half));
  ASSERT_TRUE(process_until(lines_of(half)));
}

TEST_F(NullMessageLogTest, a_long_message_is_written_in_rounds_of_the_event_loop) {
  const QByteArray message = message_of(3 * NullMessageLog::at_once + 1);
  log.write(message, 1000);
  EXPECT_EQ(output.take(), "");
  ASSERT_TRUE(process_until(lines_of(message)));
  EXPECT_EQ(marks, "");
}

TEST_F(NullMessageLogTest, messages_keep_their_order) {
  const QByteArray first = message_of(NullMessageLog::at_once + 1);
  const QByteArray second = message_of(5);
  const QByteArray third = message_of(2 * NullMessageLog::at_once);
  std::string expected;
  for (const QByteArray &message : {first, second, third}) {
    log.write(message, 1000);
    expected += lines_of(message);
  }
  ASSERT_TRUE(process_until(expected));
}

TEST_F(NullMessageLogTest, tells_when_much_waits_and_when_nothing_does) {
  const QByteArray message = message_of(NullMessageLog::high_mark - NullMessageLog::cost_of_a_message);
  log.write(message, 1000);
  EXPECT_EQ(marks, "");
  log.write(message_of(1), 2000);
  EXPECT_EQ(marks, "high 2000 ");
  log.write(message_of(2), 1000);
  EXPECT_EQ(marks, "high 2000 high 1000 ");
  ASSERT_TRUE(process_until(lines_of(message) + lines_of(message_of(1)) + lines_of(message_of(2))));
  EXPECT_EQ(marks, "high 2000 high 1000 low ");
  log.write(message_of(NullMessageLog::full_mark - NullMessageLog::cost_of_a_message), 3000);
  EXPECT_EQ(marks, "high 2000 high 1000 low high 3000 ");
  log.write({}, 3000);
  EXPECT_EQ(marks, "high 2000 high 1000 low high 3000 high 3000 full ");
}

TEST_F(NullMessageLogTest, what_is_high_is_low_at_the_low_mark) {
  // Held up by one who adds a little in each round.
  log.write(message_of(NullMessageLog::high_mark), 1000);
  const auto is_low = [&] { return marks.find("low") != std::string::npos; };
  for (int i = 0; i < 1000 && !is_low(); ++i) {
    log.write(message_of(NullMessageLog::low_mark / 2), 2000);
    QCoreApplication::processEvents();
  }
  EXPECT_TRUE(is_low()) << marks;
}

TEST_F(NullMessageLogTest, empty_messages_count_too) {
  const QByteArray message = message_of(NullMessageLog::at_once + 1);
  log.write(message, 1000);
  int count = 0;
  while (marks.empty() && count < 100'000) {
    log.write({}, 1000);
    ++count;
  }
  EXPECT_EQ(marks, "high 1000 ");
  EXPECT_LT(count, 10'000);
  ASSERT_TRUE(process_until(lines_of(message)));
  EXPECT_TRUE(test::process_events_until([&] { return marks == "high 1000 low "; }));
}

} // namespace
} // namespace buttondriver
