// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/recording/frame_splitter.h"
#include "buttonctl/recording/recording_reader.h"
#include "buttonctl/recording/recording_writer.h"
#include "support/hex.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

using test::from_hex;
using test::to_hex;

const QByteArray title = "buttonctl recording 1\n";

QByteArray bytes(const char *digits) { return QByteArray::fromStdString(from_hex(digits)); }

TEST(RecordingReaderTest, reads_times_connections_and_frames) {
  const auto good = parse_recording(QStringLiteral("a.rec"), title + "0 1 000000040000000c\n"
                                                                     "# a remark\n"
                                                                     "\n"
                                                                     "  70000000000   2147483647\t00000000 \r\n"
                                                                     "70000000000 2 0000000200FF\n");
  ASSERT_TRUE(good) << good.failure().text.toStdString();
  ASSERT_EQ(good->frames.size(), 3U);
  EXPECT_EQ(good->remark.toStdString(), "");
  EXPECT_EQ(good->lines, (std::vector<int>{2, 5, 6}));
  EXPECT_EQ(good->frames[0].time_us, 0);
  EXPECT_EQ(good->frames[0].connection, 1);
  EXPECT_EQ(good->frames[0].bytes, bytes("00000004 0000000c"));
  EXPECT_EQ(good->frames[1].time_us, 70000000000);
  EXPECT_EQ(good->frames[1].connection, 2147483647);
  EXPECT_EQ(good->frames[1].bytes, bytes("00000000"));
  EXPECT_EQ(good->frames[2].bytes, bytes("00000002 00ff"));
}

TEST(RecordingReaderTest, names_what_is_wrong_with_a_line_and_its_number) {
  struct Row {
    QByteArray content;
    const char *text;
  };
  const QByteArray ping = "000000040000000c";
  const QByteArray longer(41, '0');
  const Row rows[] = {
      {"", "a.rec:1: not a recording; the first line must be 'buttonctl recording 1'"},
      {"\n", "a.rec:1: not a recording; the first line must be 'buttonctl recording 1'"},
      {"0 1 " + ping + "\n", "a.rec:1: not a recording; the first line must be 'buttonctl recording 1'"},
      {QByteArray("\x7f"
                  "ELF\0\0",
                  6),
       "a.rec:1: not a recording; the first line must be 'buttonctl recording 1'"},
      {"buttonctl recording 2\n", "a.rec:1: a recording of version '2'; this program reads version 1"},
      {"buttonctl recording 10\n", "a.rec:1: a recording of version '10'; this program reads version 1"},
      {"buttonctl recording \n", "a.rec:1: a recording of version ''; this program reads version 1"},
      {title + "0 1\n", "a.rec:2: a frame is MICROSECONDS CONNECTION FRAME, 3 items and not 2"},
      {title + "x\n", "a.rec:2: a frame is MICROSECONDS CONNECTION FRAME, 3 items and not 1"},
      {title + "0 1 " + ping + " 00\n", "a.rec:2: a frame is MICROSECONDS CONNECTION FRAME, 3 items and not 4"},
      {title + "# x\n\n-1 1 " + ping + "\n",
       "a.rec:4: MICROSECONDS must be a number from 0 to 1000000000000000, not '-1'"},
      {title + "1.5 1 " + ping + "\n", "a.rec:2: MICROSECONDS must be a number from 0 to 1000000000000000, not '1.5'"},
      {title + "+1 1 " + ping + "\n", "a.rec:2: MICROSECONDS must be a number from 0 to 1000000000000000, not '+1'"},
      {title + "9223372036854775808 1 " + ping + "\n",
       "a.rec:2: MICROSECONDS must be a number from 0 to 1000000000000000, not '9223372036854775808'"},
      {title + "1000000000000001 1 " + ping + "\n",
       "a.rec:2: MICROSECONDS must be a number from 0 to 1000000000000000, not '1000000000000001'"},
      {title + "0 0 " + ping + "\n", "a.rec:2: CONNECTION must be a number from 1 to 2147483647, not '0'"},
      {title + "0 2147483648 " + ping + "\n",
       "a.rec:2: CONNECTION must be a number from 1 to 2147483647, not '2147483648'"},
      {title + "0 one " + ping + "\n", "a.rec:2: CONNECTION must be a number from 1 to 2147483647, not 'one'"},
      {title + "0 1 000000040000000g\n", "a.rec:2: FRAME must be hexadecimal digits, not '000000040000000g'"},
      {title + "0 1 " + longer + "x\n",
       "a.rec:2: FRAME must be hexadecimal digits, not '0000000000000000000000000000000000000000...'"},
      {title + "0 1 0000000400000\n", "a.rec:2: FRAME must be two digits for each byte, but has an odd number (13)"},
      {title + "0 1 000000\n", "a.rec:2: FRAME must begin with its length, 4 bytes, but has 3 bytes"},
      {title + "0 1 0000000400000\n0 1 " + ping, "a.rec:2: FRAME must be two digits for each byte, but has an odd "
                                                 "number (13)"},
      {title + "0 1 00000004000000\n", "a.rec:2: FRAME says that 4 bytes follow its length, but 3 do"},
      {title + "0 1 000000040000000c00\n", "a.rec:2: FRAME says that 4 bytes follow its length, but 5 do"},
      {title + "0 1 ffffffff\n", "a.rec:2: FRAME says that 4294967295 bytes follow its length, but 0 do"},
      {title + "5 1 " + ping + "\n4 2 " + ping + "\n", "a.rec:3: the time goes backwards, from 5 to 4"},
  };
  for (const Row &row : rows) {
    const auto recording = parse_recording(QStringLiteral("a.rec"), row.content);
    ASSERT_FALSE(recording) << row.text;
    EXPECT_EQ(recording.failure().text.toStdString(), row.text);
  }
}

TEST(RecordingReaderTest, leaves_out_a_last_line_that_is_cut_off_wherever_that_is) {
  const QByteArray last = "20 1 000000040000000c";
  for (int length = 0; length <= last.size(); ++length) {
    const auto recording = parse_recording(QStringLiteral("a.rec"), title + "10 1 00000000\n" + last.left(length));
    ASSERT_TRUE(recording) << length << recording.failure().text.toStdString();
    const bool whole = length == last.size();
    EXPECT_EQ(recording->frames.size(), whole ? 2U : 1U) << length;
    EXPECT_EQ(recording->remark.isEmpty(), whole || length == 0) << length;
    if (!recording->remark.isEmpty()) {
      EXPECT_TRUE(recording->remark.startsWith(QStringLiteral("a.rec:3: the last line is cut off and left out: ")))
          << recording->remark.toStdString();
    }
  }
}

TEST(RecordingReaderTest, a_missing_file_is_a_failure) {
  const auto recording = read_recording(QStringLiteral("/no/such.rec"));
  ASSERT_FALSE(recording);
  EXPECT_EQ(recording.failure().text.toStdString(), "cannot read '/no/such.rec': No such file or directory");
}

TEST(RecordingWriterTest, each_line_is_in_the_file_at_once) {
  const test::TemporaryFolder folder;
  const std::string file = folder.write("a.rec", "what was there before");
  RecordingWriter writer;
  ASSERT_TRUE(writer.open(QString::fromStdString(file)));
  EXPECT_EQ(test::read_file(file), "buttonctl recording 1\n");
  ASSERT_TRUE(writer.write({1234567890123, 7, bytes("00000004 0000000c")}));
  EXPECT_EQ(test::read_file(file), "buttonctl recording 1\n1234567890123 7 000000040000000c\n");
}

TEST(RecordingWriterTest, says_when_it_cannot_write) {
  struct Row {
    const char *file;
    const char *text;
  };
  const Row rows[] = {
      {"/no/such/a.rec", "cannot write '/no/such/a.rec': No such file or directory"},
      {"/dev/full", "cannot write to '/dev/full': No space left on device"},
  };
  for (const Row &row : rows) {
    RecordingWriter writer;
    const auto opened = writer.open(QLatin1String(row.file));
    ASSERT_FALSE(opened) << row.file;
    EXPECT_EQ(opened.failure().text.toStdString(), row.text);
  }
}

TEST(FrameSplitterTest, finds_the_same_frames_however_the_stream_is_cut) {
  const QByteArray stream = bytes("00000004 0000000c 00000000 00000002 ffee 00000001 aa 00000003 0102");
  for (int piece = 1; piece <= stream.size(); ++piece) {
    FrameSplitter splitter;
    std::string frames;
    for (int begin = 0; begin < stream.size(); begin += piece)
      for (const QByteArray &frame : splitter.take(stream.mid(begin, piece)))
        frames += to_hex(frame.toStdString()) + ' ';
    EXPECT_EQ(frames, "000000040000000c 00000000 00000002ffee 00000001aa ") << "pieces of " << piece;
    EXPECT_EQ(splitter.unfinished(), 6);
    EXPECT_FALSE(splitter.hasLostTrack());
  }
}

TEST(FrameSplitterTest, a_frame_longer_than_any_ends_the_splitting) {
  for (const char *length : {"01000001", "7fffffff", "fffffffc", "ffffffff"}) {
    FrameSplitter splitter;
    EXPECT_EQ(splitter.take(bytes("00000001 aa") + bytes(length)).size(), 1U);
    EXPECT_TRUE(splitter.hasLostTrack());
    EXPECT_EQ(splitter.unfinished(), 0);
    EXPECT_TRUE(splitter.take(bytes("00000001 aa")).empty());
  }
  FrameSplitter longest;
  EXPECT_TRUE(longest.take(bytes("01000000") + QByteArray(0x1000000 - 1, 'x')).empty());
  EXPECT_FALSE(longest.hasLostTrack());
  const auto frames = longest.take("x");
  ASSERT_EQ(frames.size(), 1U);
  EXPECT_EQ(frames[0].size(), 0x1000004);
}

} // namespace
} // namespace buttondriver::buttonctl
