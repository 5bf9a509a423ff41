// SPDX-License-Identifier: Apache-2.0
#include "protocol/frames.h"

#include <gtest/gtest.h>

#include <limits>

namespace buttondriver {
namespace {

constexpr std::uint32_t no_limit = std::numeric_limits<std::uint32_t>::max();

std::vector<QByteArray> bytes_of(const std::vector<const char *> &digits) {
  std::vector<QByteArray> list;
  for (const char *text : digits)
    list.push_back(QByteArray::fromHex(text));
  return list;
}

TEST(FramedTest, puts_the_length_before_the_message) {
  EXPECT_EQ(framed(QByteArray::fromHex("0000000c")), QByteArray::fromHex("000000040000000c"));
  EXPECT_EQ(framed(QByteArray()), QByteArray::fromHex("00000000"));
  EXPECT_EQ(framed(QByteArray(0x10203, 'x')).left(5), QByteArray::fromHex("0001020378"));
}

struct Row {
  const char *name;
  const char *stream; // hexadecimal, as the others
  std::vector<const char *> messages;
  std::int64_t unfinished;
};

const Row rows[] = {
    {"nothing", "", {}, 0},
    {"two frames", "00000004 0000000c 00000002 abcd", {"0000000c", "abcd"}, 0},
    {"part of a length", "000000", {}, 3},
    {"length alone", "00000004", {}, 4},
    {"all but one byte", "00000004 00000c", {}, 7},
    {"a frame and a part", "00000001 ff 00000002 aa", {"ff"}, 5},
    {"empty frames", "00000000 00000000", {"", ""}, 0},
    {"a length that never comes", "fffffffb 00000000 00000000", {}, 12},
    // From here on the length and its own four bytes wrap: the frame is what is there.
    {"wrapped to nothing", "fffffffc 0102", {"0102"}, 0},
    {"wrapped to three", "ffffffff 010203040506", {"010203040506"}, 0},
    {"wrapped, nothing after it", "ffffffff", {""}, 0},
    {"a frame, then a wrapped one", "00000001 aa fffffffd bb", {"aa", "bb"}, 0},
};

TEST(FrameCutterTest, takes_the_complete_frames_and_keeps_the_rest) {
  for (const Row &row : rows) {
    FrameCutter cutter(no_limit);
    EXPECT_EQ(cutter.take(QByteArray::fromHex(row.stream)), bytes_of(row.messages)) << row.name;
    EXPECT_EQ(cutter.unfinished(), row.unfinished) << row.name;
    EXPECT_FALSE(cutter.hasLostTrack()) << row.name;
  }
}

TEST(FrameCutterTest, puts_frames_together_that_come_byte_by_byte) {
  const QByteArray stream = QByteArray::fromHex("00000004 0000000c 00000000 00000002 abcd 00000001");
  FrameCutter cutter(no_limit);
  std::vector<QByteArray> messages;
  for (const char byte : stream)
    for (const QByteArray &message : cutter.take(QByteArray(1, byte)))
      messages.push_back(message);
  EXPECT_EQ(messages, bytes_of({"0000000c", "", "abcd"}));
  EXPECT_EQ(cutter.unfinished(), 4);
}

TEST(FrameCutterTest, loses_track_for_good_after_a_message_that_is_too_long) {
  for (const char *length : {"00000003", "fffffffb", "ffffffff"}) {
    FrameCutter cutter(2);
    EXPECT_EQ(cutter.take(QByteArray::fromHex("00000002 abcd") + QByteArray::fromHex(length)), bytes_of({"abcd"}));
    EXPECT_TRUE(cutter.hasLostTrack()) << length;
    EXPECT_EQ(cutter.unfinished(), 0) << length;
    EXPECT_EQ(cutter.take(QByteArray::fromHex("00000001 ff")), bytes_of({})) << length;
  }
}

} // namespace
} // namespace buttondriver
