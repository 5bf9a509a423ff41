// SPDX-License-Identifier: Apache-2.0
#include "logging/channels/log_place.h"

#include "support/log_pipe.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <sys/socket.h>
#include <thread>

namespace buttondriver {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

std::chrono::steady_clock::time_point pretended_now;

/// A place at a pipe that takes one write() until it is read.
class LogPlaceTest : public testing::Test {
protected:
  LogPlaceTest() { pretended_now = std::chrono::steady_clock::time_point() + 100h; }

  static LogPlace placeAt(int descriptor) {
    return LogPlace(
        LogDescriptor::lookedAt(descriptor), [] { return pretended_now; }, 1ms);
  }

  /// Lines of 16 bytes.
  void append(std::size_t bytes) {
    for (std::size_t i = 0; i < bytes / 16; ++i) {
      std::string line = std::to_string(_lines++);
      line.insert(0, 15 - line.size(), ' ');
      place.append(line + "\n");
    }
  }

  /// The lines with these numbers, as `append` makes them.
  static std::string lines(std::size_t begin, std::size_t end) {
    std::string all;
    for (std::size_t i = begin; i < end; ++i) {
      std::string line = std::to_string(i);
      all += line.insert(0, 15 - line.size(), ' ') + "\n";
    }
    return all;
  }

  /// Reads and has written until `done`.
  void readUntil(const std::function<bool()> &done) {
    for (;;) {
      received += pipe.takeAll();
      if (done())
        return;
      place.write();
      if (pipe.isEmpty())
        return;
    }
  }

  void readAll() {
    readUntil([] { return false; });
  }

  test::LogPipe pipe{1};
  LogPlace place = placeAt(pipe.writingEnd());
  std::string received;

private:
  std::size_t _lines = 0;
};

TEST_F(LogPlaceTest, texts_wait_until_they_are_written_together) {
  for (const char *text : {"one\n", "two, ", "three\n"})
    EXPECT_FALSE(place.append(text));
  EXPECT_TRUE(pipe.isEmpty());
  place.write();
  EXPECT_THAT(pipe.takeWrites(), ElementsAre("one\ntwo, three\n"));
  place.write();
  EXPECT_TRUE(pipe.isEmpty());
}

TEST_F(LogPlaceTest, sixteen_kib_are_written_at_once) {
  test::LogPipe wide;
  LogPlace here = placeAt(wide.writingEnd());
  EXPECT_FALSE(here.append(std::string(LogPlace::at_once - 1, 'a')));
  EXPECT_TRUE(wide.isEmpty());
  EXPECT_TRUE(here.append("b"));
  const std::vector<std::string> writes = wide.takeWrites();
  ASSERT_EQ(writes.size(), 4U);
  for (const std::string &part : writes)
    EXPECT_EQ(part.size(), 4096U);
  EXPECT_FALSE(here.append("c"));
  EXPECT_TRUE(wide.isEmpty());
}

TEST_F(LogPlaceTest, a_socket_takes_sixteen_kib_in_one_call) {
  int ends[2];
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
  const OwnedDescriptor reading_end(ends[0]);
  const OwnedDescriptor writing_end(ends[1]);
  LogPlace here = placeAt(writing_end.get());
  here.append(std::string(LogPlace::at_once, 'a'));
  std::string packet(2 * LogPlace::at_once, '\0');
  EXPECT_EQ(::recv(reading_end.get(), packet.data(), packet.size(), MSG_DONTWAIT), ssize_t{LogPlace::at_once});
}

TEST_F(LogPlaceTest, a_socket_whose_reader_stands_still_keeps_nobody_waiting) {
  int ends[2];
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
  const OwnedDescriptor reading_end(ends[0]);
  const OwnedDescriptor writing_end(ends[1]);
  LogPlace here = placeAt(writing_end.get());
  constexpr std::size_t much = 4 * 1024 * 1024;
  for (std::size_t i = 0; i < much / 16; ++i)
    here.append("sixteen letters\n");
  EXPECT_TRUE(here.isWaiting());
  EXPECT_TRUE(here.isFull());
  std::size_t got = 0;
  std::string piece(100'000, '\0');
  for (ssize_t more = 0; (more = ::recv(reading_end.get(), piece.data(), piece.size(), MSG_DONTWAIT)) > 0;) {
    got += static_cast<std::size_t>(more);
    here.write();
  }
  EXPECT_EQ(got, much);
  EXPECT_FALSE(here.isWaiting());
}

TEST_F(LogPlaceTest, a_reader_that_comes_late_gets_everything) {
  append(3000 * 96);
  EXPECT_TRUE(place.isWaiting());
  EXPECT_FALSE(place.isFull());
  readAll();
  EXPECT_TRUE(received == lines(0, 18'000));
  EXPECT_FALSE(place.isWaiting());
}

TEST_F(LogPlaceTest, tells_one_mib_as_full_until_a_quarter_of_it_is_left) {
  append(LogPlace::full_mark);
  EXPECT_FALSE(place.isFull());
  append(2 * LogPlace::at_once);
  EXPECT_TRUE(place.isFull());
  // What comes all the same is kept too.
  append(3 * LogPlace::full_mark);
  const std::size_t all = 4 * LogPlace::full_mark + 2 * LogPlace::at_once;
  readUntil([this] { return !place.isFull(); });
  EXPECT_LE(all - received.size(), LogPlace::low_mark);
  EXPECT_GT(all - received.size(), LogPlace::low_mark - 3 * 4096);
  readAll();
  EXPECT_TRUE(received == lines(0, all / 16));
}

TEST_F(LogPlaceTest, drops_and_counts_what_comes_past_twenty_mib_until_it_is_low) {
  append(LogPlace::most_waiting);
  for (int i = 0; i < 3000; ++i)
    place.append("sixteen letters\n");
  // In 16 KiB that were on their way when it was found to be too much, none is lost.
  constexpr std::size_t kept = LogPlace::most_waiting / 16;
  EXPECT_TRUE(place.isFull());
  readUntil([this] { return !place.isFull(); });
  place.append("after it\n");
  place.write();
  readAll();
  EXPECT_TRUE(received.compare(0, 16 * kept, lines(0, kept)) == 0);
  std::string rest = received.substr(16 * kept);
  std::size_t more = 0;
  for (; rest.rfind("sixteen letters\n", 0) == 0; rest.erase(0, 16))
    ++more;
  EXPECT_EQ(rest, "\nbuttondriver: texts lost that nobody read: " + std::to_string(3000 - more) + "\nafter it\n");
  EXPECT_LE(more, 2 * LogPlace::at_once / 16);
}

TEST_F(LogPlaceTest, past_twenty_mib_a_reader_that_reads_is_waited_for) {
  constexpr std::size_t all = 30 * 1024 * 1024;
  LogPlace here(LogDescriptor::lookedAt(pipe.writingEnd()), std::chrono::steady_clock::now, 20s);
  // Fills what may wait before anybody reads.
  const std::string megabyte(1024 * 1024, 'x');
  for (std::size_t i = 0; i < 20; ++i)
    here.append(megabyte);
  std::thread reader([&] {
    while (received.size() < all)
      if (const std::string more = pipe.takeUpTo("x"); !more.empty())
        received += more;
      else
        break;
  });
  for (std::size_t i = 20; i < 30; ++i)
    here.append(megabyte);
  here.finish();
  reader.join();
  EXPECT_EQ(received.size(), all);
}

TEST_F(LogPlaceTest, a_reader_that_has_read_nothing_for_thirty_seconds_is_not_waited_for) {
  // The second time counts for itself.
  constexpr std::size_t count = 2 * LogPlace::full_mark / 16;
  std::size_t first = 0;
  for (const int lost : {5, 3}) {
    received.clear();
    append(16 * count);
    ASSERT_TRUE(place.isFull());
    pretended_now += 29s;
    place.write();
    EXPECT_TRUE(place.isFull());
    pretended_now += 1s;
    place.write();
    EXPECT_FALSE(place.isFull());
    for (int i = 0; i < lost; ++i)
      place.append("lost\n");
    EXPECT_FALSE(place.isFull());
    readAll();
    EXPECT_TRUE(received == lines(first, first + count) +
                                "\nbuttondriver: texts lost that nobody read: " + std::to_string(lost) + "\n");
    first += count;
  }
  place.append("read\n");
  place.write();
  EXPECT_EQ(pipe.takeAll(), "read\n");
}

TEST_F(LogPlaceTest, a_reader_that_reads_now_and_then_is_waited_for) {
  append(2 * LogPlace::full_mark);
  for (int i = 0; i < 5; ++i) {
    pretended_now += 29s;
    received += pipe.takeAll();
    place.write();
    EXPECT_TRUE(place.isFull());
  }
  readAll();
  EXPECT_TRUE(received == lines(0, 2 * LogPlace::full_mark / 16));
}

TEST_F(LogPlaceTest, a_reader_that_has_stood_still_for_long_keeps_nobody_waiting_when_it_becomes_full) {
  append(LogPlace::at_once);
  ASSERT_TRUE(place.isWaiting());
  pretended_now += 30s;
  append(2 * LogPlace::full_mark);
  EXPECT_FALSE(place.isFull());
}

TEST_F(LogPlaceTest, descriptors_that_fail_are_ignored) {
  std::signal(SIGPIPE, SIG_IGN); // as the programs do
  const OwnedDescriptor full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
  constexpr int closed = 1'000'000;
  pipe.closeReadingEnd();
  for (const int descriptor : {full.get(), closed, pipe.writingEnd()}) {
    LogPlace here = placeAt(descriptor);
    for (int i = 0; i < 100'000; ++i)
      here.append("sixteen letters\n");
    here.write();
    EXPECT_FALSE(here.isWaiting()) << descriptor;
    EXPECT_FALSE(here.isFull()) << descriptor;
  }
}

TEST_F(LogPlaceTest, a_failure_ends_the_waiting) {
  std::signal(SIGPIPE, SIG_IGN);
  append(2 * LogPlace::full_mark);
  ASSERT_TRUE(place.isFull());
  pipe.closeReadingEnd();
  place.write();
  EXPECT_FALSE(place.isWaiting());
  EXPECT_FALSE(place.isFull());
}

TEST_F(LogPlaceTest, the_end_brings_what_was_gathered_and_what_was_lost) {
  place.append("the last\n");
  place.finish();
  EXPECT_EQ(pipe.takeAll(), "the last\n");

  append(2 * LogPlace::full_mark);
  pretended_now += 30s;
  place.write();
  place.append("lost\n");
  std::thread reader([this] { received = pipe.takeUpTo(" 1\n"); });
  place.finish();
  pipe.closeWritingEnd();
  reader.join();
  EXPECT_TRUE(received == lines(0, 2 * LogPlace::full_mark / 16) + "\nbuttondriver: texts lost that nobody read: 1\n");
}

} // namespace
} // namespace buttondriver
