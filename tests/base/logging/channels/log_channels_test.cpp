// SPDX-License-Identifier: Apache-2.0
#include "logging/channels/log_channels.h"

#include "support/log_pipe.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

namespace buttondriver {
namespace {

using Channel = LogChannels::Channel;
using testing::ElementsAre;

class LogChannelsTest : public testing::Test {
protected:
  ~LogChannelsTest() override { channels.stopGathering(); }

  void gather(int output_descriptor, int error_descriptor) {
    LogChannels::Gathering how;
    how.output = output_descriptor;
    how.error = error_descriptor;
    how.tell = [this] { ++told; };
    channels.gather(how);
  }

  void writeInTurn() {
    for (const char *text : {"1 ", "2 ", "3 "}) {
      channels.write(Channel::output, "o" + std::string(text));
      channels.write(Channel::error, "e" + std::string(text));
    }
  }

  LogChannels channels;
  test::LogPipe output;
  test::LogPipe error;
  int told = 0;
};

TEST_F(LogChannelsTest, two_places_get_a_write_each) {
  gather(output.writingEnd(), error.writingEnd());
  writeInTurn();
  EXPECT_TRUE(output.isEmpty());
  EXPECT_TRUE(error.isEmpty());
  channels.writeGathered();
  EXPECT_THAT(output.takeWrites(), ElementsAre("o1 o2 o3 "));
  EXPECT_THAT(error.takeWrites(), ElementsAre("e1 e2 e3 "));
}

TEST_F(LogChannelsTest, one_place_gets_both_in_their_order_in_one_write) {
  const OwnedDescriptor again(::dup(output.writingEnd()));
  gather(output.writingEnd(), again.get());
  writeInTurn();
  channels.writeGathered();
  EXPECT_THAT(output.takeWrites(), ElementsAre("o1 e1 o2 e2 o3 e3 "));
}

TEST_F(LogChannelsTest, a_file_that_both_have_opened_gets_both_in_their_order) {
  const test::TemporaryFolder folder;
  const std::string name = folder.path("log");
  const OwnedDescriptor first(::open(name.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  const OwnedDescriptor second(::open(name.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
  gather(first.get(), second.get());
  writeInTurn();
  channels.writeGathered();
  EXPECT_EQ(test::read_file(name), "o1 e1 o2 e2 o3 e3 ");
}

TEST_F(LogChannelsTest, what_another_thread_logs_waits_for_the_gatherer_as_long_as_that_is_awake) {
  gather(output.writingEnd(), error.writingEnd());
  const auto on_other_thread = [this](const char *text) {
    std::thread([&] {
      channels.write(Channel::output, text);
      channels.writeBeforeWaiting();
    }).join();
  };
  on_other_thread("at the start, ");
  EXPECT_TRUE(output.isEmpty());
  channels.writeGathered();
  EXPECT_EQ(output.takeAll(), "at the start, ");

  on_other_thread("asleep\n");
  EXPECT_EQ(output.takeAll(), "asleep\n");

  channels.write(Channel::output, "the gatherer, ");
  on_other_thread("awake\n");
  EXPECT_TRUE(output.isEmpty());
  channels.writeGathered();
  EXPECT_THAT(output.takeWrites(), ElementsAre("the gatherer, awake\n"));
}

TEST_F(LogChannelsTest, a_thread_that_has_logged_nothing_writes_nothing_of_others) {
  gather(output.writingEnd(), error.writingEnd());
  channels.writeGathered();
  channels.write(Channel::output, "the gatherer\n");
  std::thread([this] { channels.writeBeforeWaiting(); }).join();
  EXPECT_TRUE(output.isEmpty());
}

TEST_F(LogChannelsTest, lines_of_two_threads_stay_whole_and_each_thread_s_in_order) {
  gather(output.writingEnd(), output.writingEnd());
  constexpr int count = 20'000;
  std::vector<std::thread> writers;
  for (const char *name : {"a", "b"})
    writers.emplace_back([this, name] {
      for (int i = 0; i < count; ++i) {
        channels.write(i % 2 == 0 ? Channel::output : Channel::error, name + std::to_string(i) + "\n");
        channels.writeBeforeWaiting();
      }
    });
  std::thread ender([&] {
    for (std::thread &writer : writers)
      writer.join();
    channels.write(Channel::output, "end\n");
    channels.stopGathering();
  });
  const std::string all = output.takeUpTo("end\n");
  ender.join();
  int next[2] = {0, 0};
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = all.find('\n', begin)) != std::string::npos; begin = end + 1) {
    const std::string line = all.substr(begin, end - begin);
    if (line == "end")
      break;
    int &number = next[line[0] == 'b'];
    ASSERT_EQ(line.substr(1), std::to_string(number));
    ++number;
  }
  EXPECT_EQ(next[0], count);
  EXPECT_EQ(next[1], count);
}

TEST_F(LogChannelsTest, tells_once_that_a_reader_is_slow_and_once_that_it_is_full) {
  test::LogPipe slow(1);
  gather(slow.writingEnd(), error.writingEnd());
  channels.write(Channel::output, std::string(LogPlace::at_once, 'a'));
  channels.write(Channel::output, std::string(LogPlace::at_once, 'a'));
  EXPECT_EQ(told, 1);
  LogChannels::Status status = channels.status();
  EXPECT_EQ(status.waiting[0], slow.writingEnd());
  EXPECT_EQ(status.waiting[1], -1);
  EXPECT_FALSE(status.is_full);
  for (int i = 0; i < 3; ++i)
    channels.write(Channel::output, std::string(LogPlace::full_mark, 'a'));
  EXPECT_EQ(told, 2);
  EXPECT_TRUE(channels.status().is_full);
  slow.closeReadingEnd();
}

TEST_F(LogChannelsTest, after_the_end_of_gathering_each_text_is_written_at_once) {
  gather(output.writingEnd(), error.writingEnd());
  channels.write(Channel::error, "gathered\n");
  channels.stopGathering();
  EXPECT_EQ(error.takeAll(), "gathered\n");
  testing::internal::CaptureStderr();
  channels.write(Channel::error, "at once\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "at once\n");
}

} // namespace
} // namespace buttondriver
