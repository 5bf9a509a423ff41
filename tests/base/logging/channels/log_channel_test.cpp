// SPDX-License-Identifier: Apache-2.0
#include "logging/channels/log_channel.h"

#include "files/owned_descriptor.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <thread>
#include <unistd.h>

namespace buttondriver {
namespace {

class LogChannelTest : public testing::Test {
protected:
  LogChannelTest() {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    reading_end.reset(ends[0]);
    writing_end.reset(ends[1]);
    EXPECT_EQ(::fcntl(writing_end.get(), F_SETPIPE_SZ, pipe_size), pipe_size);
  }

  /// What is in the pipe, without waiting for more.
  std::string takeAll() const {
    ::fcntl(reading_end.get(), F_SETFL, O_NONBLOCK);
    std::string all;
    char piece[4096];
    for (ssize_t got = 0; (got = ::read(reading_end.get(), piece, sizeof piece)) > 0;)
      all.append(piece, static_cast<std::size_t>(got));
    return all;
  }

  static constexpr int pipe_size = 16 * 1024;
  static constexpr std::chrono::milliseconds short_patience{1};
  OwnedDescriptor reading_end;
  OwnedDescriptor writing_end;
};

TEST_F(LogChannelTest, texts_that_find_no_room_are_lost_and_counted_in_the_log) {
  LogChannel channel(writing_end.get(), short_patience);
  const std::string fitting(pipe_size, 'a');
  channel.write(fitting);
  for (int i = 0; i < 3; ++i)
    channel.write("lost\n");
  EXPECT_EQ(takeAll(), fitting);
  channel.write("read\n");
  EXPECT_EQ(takeAll(), "\nbuttondriver: texts lost that nobody read: 3\nread\n");
  channel.write("and so on\n");
  EXPECT_EQ(takeAll(), "and so on\n");
}

TEST_F(LogChannelTest, a_text_that_was_cut_off_does_not_run_into_the_next) {
  LogChannel channel(writing_end.get(), short_patience);
  channel.write(std::string(pipe_size, 'a') + "cut off\n");
  EXPECT_EQ(takeAll(), std::string(pipe_size, 'a'));
  channel.write("whole\n");
  EXPECT_EQ(takeAll(), "\nbuttondriver: texts lost that nobody read: 1\nwhole\n");
}

TEST_F(LogChannelTest, a_slow_reader_loses_nothing) {
  constexpr std::size_t length = 1'000'000;
  std::string received;
  std::thread reader([&] {
    char piece[1000];
    while (received.size() < length) {
      const ssize_t got = ::read(reading_end.get(), piece, sizeof piece);
      if (got <= 0)
        return;
      received.append(piece, static_cast<std::size_t>(got));
    }
  });
  LogChannel(writing_end.get(), std::chrono::seconds(20)).write(std::string(length, 'x'));
  reader.join();
  EXPECT_EQ(received, std::string(length, 'x'));
}

TEST_F(LogChannelTest, descriptors_that_fail_are_ignored) {
  const OwnedDescriptor full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
  constexpr int closed = 1'000'000;
  // As the programs do.
  std::signal(SIGPIPE, SIG_IGN);
  reading_end.reset();
  for (const int descriptor : {full.get(), closed, writing_end.get()}) {
    LogChannel channel(descriptor);
    channel.write("one\n");
    channel.write("two\n");
  }
}

} // namespace
} // namespace buttondriver
