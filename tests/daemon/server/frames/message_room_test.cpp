// SPDX-License-Identifier: Apache-2.0
#include "server/frames/message_room.h"

#include "buttons/button_setter.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace buttondriver {
namespace {

/// A turn with these messages.
std::vector<QByteArray> turn_with(MessageRoom &room, const std::vector<std::string> &texts) {
  std::vector<QByteArray> messages = room.takeList();
  for (std::size_t i = 0; i < texts.size(); ++i)
    copy_to(room.place(messages, i), texts[i].data(), texts[i].size());
  room.cut(messages, texts.size());
  return messages;
}

std::vector<QByteArray> as_messages(const std::vector<std::string> &texts) {
  std::vector<QByteArray> messages;
  for (const std::string &text : texts)
    messages.push_back(QByteArray::fromStdString(text));
  return messages;
}

const std::string longest_small(ButtonSetter::most_reused, 's');
const std::string large(ButtonSetter::most_reused + 1, 'l');

TEST(MessageRoomTest, gives_turns_of_all_sizes_their_messages) {
  MessageRoom room;
  for (const std::vector<std::string> &texts : std::vector<std::vector<std::string>>{{"one"},
                                                                                     {},
                                                                                     {"a", "b", "c"},
                                                                                     {"", "x"},
                                                                                     {large, longest_small},
                                                                                     {"small", large, ""},
                                                                                     {"abc", "def", "gh", "i"}}) {
    std::vector<QByteArray> messages = turn_with(room, texts);
    EXPECT_EQ(messages, as_messages(texts));
    room.giveBack(std::move(messages));
  }
}

TEST(MessageRoomTest, uses_memory_of_small_messages_again) {
  MessageRoom room;
  std::vector<QByteArray> messages = turn_with(room, {"the first one", "the second one"});
  const char *const first = messages[0].constData();
  const char *const second = messages[1].constData();
  for (const std::string &next : {longest_small, std::string(), std::string("short")}) {
    room.giveBack(std::move(messages));
    room.giveBack(turn_with(room, {next}));
    QByteArray taker; // of what was freed
    taker.reserve(static_cast<int>(ButtonSetter::most_reused));
    messages = turn_with(room, {next, next});
    EXPECT_EQ(messages[0].constData(), first);
    EXPECT_EQ(messages[1].constData(), second);
  }
}

TEST(MessageRoomTest, leaves_a_message_to_those_that_share_it) {
  MessageRoom room;
  std::vector<QByteArray> messages = turn_with(room, {"shared"});
  const QByteArray kept = messages[0];
  room.giveBack(std::move(messages));
  EXPECT_EQ(turn_with(room, {"others"}), as_messages({"others"}));
  EXPECT_EQ(kept, "shared");
}

TEST(MessageRoomTest, uses_no_memory_of_a_large_message_again) {
  MessageRoom room;
  room.giveBack(turn_with(room, {large}));
  EXPECT_LT(turn_with(room, {"small"})[0].capacity(), static_cast<int>(large.size()));
}

} // namespace
} // namespace buttondriver
