// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/decode/found_messages.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

/// "PLACE HEX" of each message and "PLACE! TEXT" of each fault, a line each.
std::string told(const FoundMessages &found) {
  std::string text;
  for (const FoundMessage &message : found.messages)
    text += message.place.text().toStdString() + ' ' + message.bytes.toHex().toStdString() + '\n';
  for (const FoundFault &fault : found.faults)
    text += fault.place.text().toStdString() + "! " + fault.text.toStdString() + '\n';
  return text;
}

TEST(FoundMessagesTest, lie_one_after_the_other_up_to_what_is_broken) {
  struct Row {
    const char *hex;
    const char *found;
  };
  const Row rows[] = {
      {"", ""},
      {"00000004 0000000c 00000000 00000001 ff", "offset 0 0000000c\noffset 8 \noffset 12 ff\n"},
      {"00000001 aa 000000", "offset 0 aa\noffset 5! a length of 4 bytes is cut off after 3\n"},
      {"00000001 aa 00000004 bbcc", "offset 0 aa\noffset 5! a message of 4 bytes is cut off after 2\n"},
      {"00000001 aa 01000001 bbcc",
       "offset 0 aa\noffset 5! a length of 16777217 bytes, which is none of a message; what follows is left out\n"},
      {"ffffffff 00000001 aa",
       "offset 0! a length of 4294967295 bytes, which is none of a message; what follows is left out\n"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(told(messages_in_stream(QByteArray::fromHex(row.hex))), row.found) << row.hex;
}

TEST(FoundMessagesTest, are_found_in_whatever_the_content_is) {
  const std::pair<QByteArray, const char *> rows[] = {
      {QByteArray::fromHex("00000001aa"), "offset 0 aa\n"},
      {"00000001aa\n 0000 0001\tBB\r\n", "offset 0 aa\noffset 5 bb\n"},
      {"00000001a a0", "offset 0 aa\noffset 5! the last byte has one digit, and is left out\n"},
      {"buttonctl recording 1\n# remark\n\n5 1 00000001aa\n7 x 00\n9 2 00000001bb\n10 1 0000",
       "line 4 aa\nline 6 bb\n"
       "line 5! CONNECTION must be a number from 1 to 2147483647, not 'x'\n"
       "line 7! FRAME must begin with its length, 4 bytes, but has 2 bytes\n"},
  };
  for (const auto &[content, found] : rows) {
    const Outcome<FoundMessages> messages = messages_in_content(content);
    ASSERT_TRUE(messages);
    EXPECT_EQ(told(*messages), found) << content.toStdString();
  }
  EXPECT_FALSE(messages_in_content("buttonctl recording 2\n"));
}

TEST(FoundMessagesTest, of_a_recording_have_their_time_and_connection) {
  const Outcome<FoundMessages> found = messages_in_content("buttonctl recording 1\n5000001 3 00000001aa\n");
  ASSERT_TRUE(found);
  ASSERT_EQ(found->messages.size(), 1U);
  EXPECT_EQ(found->messages.front().time_us, 5000001);
  EXPECT_EQ(found->messages.front().connection, 3);
}

} // namespace
} // namespace buttondriver::buttonctl
