// SPDX-License-Identifier: Apache-2.0
#include "server/frames/message_room.h"

#include "buttons/button_setter.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace buttondriver {
namespace {

/// A turn with one message.
std::vector<QByteArray> turn_with(MessageRoom &room, const std::string &bytes) {
  std::vector<QByteArray> messages = room.takeList();
  messages.push_back(room.copyOf(bytes.data(), bytes.size()));
  return messages;
}

TEST(MessageRoomTest, uses_memory_of_a_small_message_again) {
  MessageRoom room;
  std::vector<QByteArray> messages = turn_with(room, "the first one");
  const char *const memory = messages[0].constData();
  room.giveBack(std::move(messages));
  for (const std::string &next : {std::string(ButtonSetter::most_reused, 'x'), std::string(), std::string("short")}) {
    messages = turn_with(room, next);
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].constData(), memory);
    EXPECT_EQ(messages[0], QByteArray::fromStdString(next));
    room.giveBack(std::move(messages));
  }
}

TEST(MessageRoomTest, leaves_a_message_to_those_that_share_it) {
  MessageRoom room;
  std::vector<QByteArray> messages = turn_with(room, "shared");
  const QByteArray kept = messages[0];
  room.giveBack(std::move(messages));
  messages = turn_with(room, "others");
  EXPECT_EQ(messages[0], "others");
  EXPECT_EQ(kept, "shared");
}

TEST(MessageRoomTest, keeps_no_memory_of_a_large_message) {
  MessageRoom room;
  const std::string large(ButtonSetter::most_reused + 1, 'l');
  room.giveBack(turn_with(room, large));
  EXPECT_EQ(turn_with(room, large)[0], QByteArray::fromStdString(large));
  const std::vector<QByteArray> messages = turn_with(room, "small");
  EXPECT_LT(messages[0].capacity(), static_cast<int>(large.size()));
}

} // namespace
} // namespace buttondriver
