// SPDX-License-Identifier: Apache-2.0
#include "simulator/device/transfer_recorder.h"

#include "simulator/device/virtual_panel.h"
#include "support/captured_log.h"
#include "support/temporary_folder.h"
#include "transfer_bytes.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace buttondriver::simulator {
namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

class TransferRecorderTest : public testing::Test {
protected:
  std::string recorded() const { return test::read_file(file); }

  const test::TemporaryFolder folder;
  const std::string file = folder.path("transfers");
};

TEST_F(TransferRecorderTest, writes_a_line_for_every_transfer_at_once) {
  TransferRecorder recorder(file);
  EXPECT_TRUE(recorder.isOpen());
  EXPECT_EQ(recorded(), "");
  std::uint16_t words[] = {0x6500, 0x0001, 0xFFFF, 0xABCD};
  recorder.record({0x0900, false, words, 1});
  EXPECT_THAT(recorded(), MatchesRegex("[0-9]+ w 0900 1 6500\n"));
  recorder.record({0x0A0F, false, words, 4});
  recorder.record({0x0000, true, words + 1, 1});
  recorder.record({0x0A03, false, nullptr, 0});
  recorder.record({0x1FFFABCD, false, words, 2});
  EXPECT_THAT(lines_of(recorded()),
              ElementsAre(MatchesRegex("[0-9]+ w 0900 1 6500"), MatchesRegex("[0-9]+ w 0a0f 4 6500 0001 ffff abcd"),
                          MatchesRegex("[0-9]+ r 0000 1 0001"), MatchesRegex("[0-9]+ w 0a03 0"),
                          MatchesRegex("[0-9]+ w 1fffabcd 2 6500 0001")));
  EXPECT_EQ(recorded().back(), '\n');
}

TEST_F(TransferRecorderTest, writes_all_words_of_a_screen) {
  TransferRecorder recorder(file);
  std::vector<std::uint16_t> words(16384, 0xF81F);
  recorder.record({0x0A03, false, words.data(), 16384});
  std::string expected = "w 0a03 16384";
  for (int i = 0; i < 16384; ++i)
    expected += " f81f";
  const std::string text = recorded();
  EXPECT_EQ(text.substr(text.find('w')), expected + "\n");
}

TEST_F(TransferRecorderTest, times_are_microseconds_since_it_was_made_and_never_fall) {
  const auto before = std::chrono::steady_clock::now();
  TransferRecorder recorder(file);
  std::uint16_t word = 0;
  for (int i = 0; i < 100; ++i)
    recorder.record({0x0900, false, &word, 1});
  const auto elapsed = std::chrono::steady_clock::now() - before;
  long long last = 0;
  for (const std::string &line : lines_of(recorded())) {
    const long long time = std::atoll(line.c_str());
    EXPECT_GE(time, last);
    last = time;
  }
  EXPECT_GT(last, 0);
  EXPECT_LE(last, std::chrono::duration_cast<std::chrono::microseconds>(elapsed).count());
}

TEST_F(TransferRecorderTest, replaces_an_older_recording) {
  folder.write("transfers", "something old\n");
  TransferRecorder recorder(file);
  EXPECT_EQ(recorded(), "");
}

TEST_F(TransferRecorderTest, that_cannot_write_its_file_records_nothing) {
  TransferRecorder recorder(folder.path("missing") + "/transfers");
  EXPECT_FALSE(recorder.isOpen());
  std::uint16_t word = 0;
  recorder.record({0x0900, false, &word, 1});
}

TEST_F(TransferRecorderTest, sees_what_the_panel_accepts_and_what_reads_return) {
  TransferRecorder recorder(file);
  VirtualPanel panel;
  const auto send = [&](const char *bytes) {
    panel::TransferRecord record = test::record_of(bytes);
    return panel.transfer(0, 0xC0102400, record, nullptr);
  };
  send("00000000 0330 0000 01000000 01000000"); // before there is a recorder
  panel.setRecorder(&recorder);
  send("00000000 0330 0000 01000000 03000000");
  {
    const test::CapturedOutput refusal;
    send("00000000 0330 0000 02000000 00000000"); // two words without a buffer
  }
  send("00000000 0370 0000 01000000 ffff0000");
  panel.setRecorder(nullptr);
  send("00000000 0330 0000 01000000 02000000");
  EXPECT_THAT(lines_of(recorded()),
              ElementsAre(MatchesRegex("[0-9]+ w 1003 1 0003"), MatchesRegex("[0-9]+ r 1003 1 0003")));
  EXPECT_EQ(panel.counters().transfers, 5U);
  EXPECT_EQ(panel.counters().refused, 1U);
}

} // namespace
} // namespace buttondriver::simulator
