// SPDX-License-Identifier: Apache-2.0
#include "server/frames/frame_reader.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <string>

namespace buttondriver {
namespace {

struct Row {
  const char *name;
  const char *stream;                 // hexadecimal
  std::vector<const char *> messages; // hexadecimal
  const char *left;                   // hexadecimal
};

TEST(FrameReaderTest, takes_the_complete_frames_and_leaves_the_rest) {
  const Row rows[] = {
      {"nothing", "", {}, ""},
      {"two frames", "00000004 0000000c 00000002 abcd", {"0000000c", "abcd"}, ""},
      {"part of a length", "000000", {}, "000000"},
      {"length alone", "00000004", {}, "00000004"},
      {"all but one byte", "00000004 00000c", {}, "0000000400000c"},
      {"a frame and a part", "00000001 ff 00000002 aa", {"ff"}, "00000002aa"},
      {"empty frames", "00000000 00000000", {"", ""}, ""},
      {"a null message, and what may have to wait for it", "00000004 00000000 00000001 aa", {"00000000"}, "00000001aa"},
      {"a null message of one byte", "00000001 00 00000001 aa", {"00"}, "00000001aa"},
      {"an empty one has nothing to wait for", "00000000 00000001 aa", {"", "aa"}, ""},
      {"a length that never comes", "fffffffb 00000000 00000000", {}, "fffffffb0000000000000000"},
      // From here on the length and its own four bytes wrap: the frame is what is there.
      {"wrapped to nothing", "fffffffc 0102", {"0102"}, ""},
      {"wrapped to three", "ffffffff 010203040506", {"010203040506"}, ""},
      {"wrapped, nothing after it", "ffffffff", {""}, ""},
      {"a frame, then a wrapped one", "00000001 aa fffffffd bb", {"aa", "bb"}, ""},
  };
  for (const Row &row : rows) {
    QBuffer stream;
    stream.setData(QByteArray::fromHex(row.stream));
    stream.open(QIODevice::ReadOnly);
    std::vector<QByteArray> expected;
    for (const char *message : row.messages)
      expected.push_back(QByteArray::fromHex(message));
    EXPECT_EQ(take_frames(stream), expected) << row.name;
    EXPECT_EQ(stream.readAll().toHex().toStdString(), row.left) << row.name;
  }
}

TEST(FrameReaderTest, takes_only_what_was_chosen) {
  const std::string ping = "00000004 0000000c ";
  const std::string longer_ping = "00000005 0000000c00 ";
  const std::string null = "00000004 00000000 ";
  const std::string short_null = "00000002 0000 ";
  const std::string work = "00000004 0000000f ";
  const std::string empty = "00000000 ";
  struct ChoiceRow {
    const char *name;
    FrameChoice choice;
    std::string stream;
    std::size_t taken;
  };
  const ChoiceRow rows[] = {
      {"all", FrameChoice::all, work + ping + empty + null, 4},
      {"pings up to something else", FrameChoice::leading_pings, ping + ping + work + ping, 2},
      {"what only begins as a ping", FrameChoice::leading_pings, ping + longer_ping, 1},
      {"an empty one is no ping", FrameChoice::leading_pings, empty + ping, 0},
      {"half a ping", FrameChoice::leading_pings, "00000004 0000", 0},
      {"up to a null message", FrameChoice::no_null_messages, work + empty + ping + null + work, 3},
      {"up to a short one", FrameChoice::no_null_messages, work + short_null, 1},
      {"up to one that is null with the bytes it lacks", FrameChoice::no_null_messages, work + "00000003 000000", 1},
      {"not up to one that is none", FrameChoice::no_null_messages, "00000002 ff00" + work, 2},
      {"not up to a wrapped length with nothing after it", FrameChoice::no_null_messages, work + "ffffffff", 2},
      {"up to a wrapped length with zeros after it", FrameChoice::no_null_messages, work + "fffffffd 00", 1},
      {"none", FrameChoice::none, ping, 0},
  };
  for (const ChoiceRow &row : rows) {
    QBuffer stream;
    stream.setData(QByteArray::fromHex(QByteArray::fromStdString(row.stream)));
    stream.open(QIODevice::ReadOnly);
    EXPECT_EQ(take_frames(stream, 100, row.choice).size(), row.taken) << row.name;
  }
}

TEST(FrameReaderTest, ends_with_the_message_that_is_called_the_last_one_and_at_the_limit) {
  QBuffer stream;
  stream.setData(QByteArray::fromHex("00000001aa 00000001bb 00000001cc 00000001dd"));
  stream.open(QIODevice::ReadOnly);
  const auto is_b = [](const QByteArray &message) { return message == "\xbb"; };
  MessageRoom room;
  {
    FrameWindow window(stream);
    EXPECT_EQ(take_frames(window, room, 100, FrameChoice::all, is_b).size(), 2U);
  }
  EXPECT_EQ(take_frames(stream, 1).size(), 1U);
  EXPECT_EQ(take_frames(stream).size(), 1U);
}

} // namespace
} // namespace buttondriver
