// SPDX-License-Identifier: Apache-2.0
#include "server/frame_reader.h"

#include <QBuffer>

#include <gtest/gtest.h>

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

} // namespace
} // namespace buttondriver
