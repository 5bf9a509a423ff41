// SPDX-License-Identifier: Apache-2.0
#include "server/frames/frame_window.h"

#include "protocol/framing.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <string>

namespace buttondriver {
namespace {

constexpr std::size_t window = limits::frame_window;

/// `letter` as often as `size` says, after the four bytes of the length.
std::string frame(std::size_t size, char letter) {
  std::string bytes;
  for (const int shift : {24, 16, 8, 0})
    bytes += static_cast<char>(size >> shift & 0xFF);
  return bytes + std::string(size, letter);
}

struct Stream : QBuffer {
  explicit Stream(const std::string &bytes) {
    setData(QByteArray::fromStdString(bytes));
    open(QIODevice::ReadOnly);
  }
};

QByteArray taken_from(FrameWindow &frames) {
  QByteArray message;
  frames.take(message);
  return message;
}

TEST(FrameWindowTest, takes_frames_that_lie_across_the_end_of_what_it_looks_at) {
  // The size of a first message, so that the second frame begins near the end of the window.
  for (std::size_t left_for_second = 0; left_for_second <= 12; ++left_for_second) {
    for (const std::size_t second : {0U, 1U, 4U, 300U, unsigned{window}, 3 * unsigned{window}}) {
      SCOPED_TRACE(std::to_string(left_for_second) + " bytes seen of a frame of " + std::to_string(second));
      const std::size_t first = window - frame_prefix_size - left_for_second;
      Stream stream(frame(first, 'a') + frame(second, 'b') + frame(2, 'c') + "rest");
      {
        FrameWindow frames(stream);
        EXPECT_EQ(taken_from(frames), QByteArray(static_cast<int>(first), 'a'));
        EXPECT_TRUE(frames.isToBeTaken(FrameChoice::all));
        EXPECT_EQ(taken_from(frames), QByteArray(static_cast<int>(second), 'b'));
        EXPECT_EQ(taken_from(frames), "cc");
        EXPECT_EQ(frames.left(), 4);
      }
      EXPECT_EQ(stream.readAll(), "rest");
    }
  }
}

TEST(FrameWindowTest, sees_of_which_kind_a_frame_is_at_the_end_of_what_it_looks_at) {
  const std::string ping = frame(4, '\0').substr(0, 7) + '\x0c';
  for (std::size_t left_for_ping = 0; left_for_ping <= 8; ++left_for_ping) {
    SCOPED_TRACE(left_for_ping);
    Stream stream(frame(window - frame_prefix_size - left_for_ping, 'a') + ping);
    FrameWindow frames(stream);
    EXPECT_FALSE(frames.isToBeTaken(FrameChoice::leading_pings));
    taken_from(frames);
    EXPECT_TRUE(frames.isToBeTaken(FrameChoice::leading_pings));
    EXPECT_TRUE(frames.isToBeTaken(FrameChoice::no_null_messages));
  }
}

TEST(FrameWindowTest, tells_what_is_left_and_leaves_it_in_the_stream) {
  Stream stream(frame(1, 'a') + frame(9, 'b').substr(0, 12));
  {
    FrameWindow frames(stream);
    taken_from(frames);
    EXPECT_EQ(frames.left(), 12);
    EXPECT_TRUE(frames.head().is_known);
    EXPECT_EQ(frames.head().length, 9U);
    EXPECT_FALSE(frames.head().is_complete);
    EXPECT_FALSE(frames.isToBeTaken(FrameChoice::all));
  }
  EXPECT_EQ(stream.bytesAvailable(), 12);
}

TEST(FrameWindowTest, leaves_nothing_when_a_length_wraps) {
  Stream stream("\xff\xff\xff\xfe"
                "abc");
  FrameWindow frames(stream);
  EXPECT_EQ(taken_from(frames), "abc");
  EXPECT_EQ(frames.left(), 0);
}

} // namespace
} // namespace buttondriver
