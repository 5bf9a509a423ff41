// SPDX-License-Identifier: Apache-2.0
// Every message, built and sent, against bytes written by hand.

#include "bmp_file.h"
#include "open_client.h"
#include "protocol/catalogue.h"
#include "support/hex.h"

#include <functional>
#include <set>

namespace buttondriver::test {
namespace {

struct MessageRow {
  const char *name;
  std::function<buttondriver_result(buttondriver_message *)> encode;
  std::function<buttondriver_result(buttondriver_client *)> send;
  std::string hex; ///< without the length
};

void PrintTo(const MessageRow &row, std::ostream *stream) { *stream << row.name; }

std::string counting_image() {
  std::string image;
  for (int i = 0; i < 120; ++i)
    image += static_cast<char>(0x80 + i);
  return image;
}

const std::string image = counting_image();
const std::string bmp = bmp_file();

// The function of messages.h and that of client.h, with the same arguments.
#define CALLS(name, ...)                                                                                               \
  [](buttondriver_message *place) { return buttondriver_encode_##name(place, __VA_ARGS__); },                          \
      [](buttondriver_client *place) { return buttondriver_##name(place, __VA_ARGS__); }
#define CALLS_ALONE(name)                                                                                              \
  [](buttondriver_message *place) { return buttondriver_encode_##name(place); },                                       \
      [](buttondriver_client *place) { return buttondriver_##name(place); }

const MessageRow message_rows[] = {
    {"text", CALLS(text, 0, 2, "Hello"), "0000000f 00000000 00000002 00000001 00000006 48656c6c6f00"},
    {"text_on_all_screens", CALLS(text, BUTTONDRIVER_ALL_SCREENS, 0, "A"),
     "0000000f ffffffff 00000000 00000001 00000002 4100"},
    {"empty_text", CALLS(text, 2, 0x7FFFFFFF, ""), "0000000f 00000002 7fffffff 00000001 00000001 00"},
    {"text_beyond_ascii", CALLS(text, 1, 0, "\xE4\xFF"), "0000000f 00000001 00000000 00000001 00000003 e4ff00"},
    {"text_inverse", CALLS(text_inverse, 1, 3, "Hi"), "0000000f 00000001 00000003 00000000 00000003 486900"},
    {"text_part", CALLS(text_part, 2, 1, 4, 5, "Ready", 0x123456, 0xFEDCBA),
     "00000012 00000002 00000001 00000004 00000005 00123456 00fedcba 00000006 526561647900"},
    {"text_part_of_nothing", CALLS(text_part, -1, 0, 0, 0, "", BUTTONDRIVER_BLACK, BUTTONDRIVER_WHITE),
     "00000012 ffffffff 00000000 00000000 00000000 00000000 00ffffff 00000001 00"},
    {"picture", CALLS(picture, 1, 10, -20, bmp.data(), bmp.size()),
     "00000013 00000001 0000000a ffffffec 00000046" + to_hex(bmp)},
    {"blackout", CALLS(blackout, 2), "00000010 00000002"},
    {"blackout_of_all_screens", CALLS(blackout, BUTTONDRIVER_ALL_SCREENS), "00000010 ffffffff"},
    {"led_on", CALLS(led, 5, BUTTONDRIVER_ON), "00000011 00000005 00000001 00000000"},
    {"led_off", CALLS(led, 23, BUTTONDRIVER_OFF), "00000011 00000017 00000000 00000000"},
    {"all_leds_on", CALLS(led, BUTTONDRIVER_ALL_BUTTONS, BUTTONDRIVER_ON), "00000011 ffffffff 00000001 00000000"},
    {"led_blink", CALLS(led_blink, 7, 250), "00000011 00000007 ffffffff 000000fa"},
    {"led_blink_shortest", CALLS(led_blink, 0, 1), "00000011 00000000 ffffffff 00000001"},
    {"all_leds_blink_longest", CALLS(led_blink, -1, 0x7FFFFFFF), "00000011 ffffffff ffffffff 7fffffff"},
    {"status_on", CALLS(status, 31, BUTTONDRIVER_ON), "00000015 0000001f 00000001"},
    {"status_off", CALLS(status, 0, BUTTONDRIVER_OFF), "00000015 00000000 00000000"},
    {"toggle_on", CALLS(toggle, 1, BUTTONDRIVER_ON), "00000016 00000001 00000001"},
    {"toggle_off", CALLS(toggle, 0, BUTTONDRIVER_OFF), "00000016 00000000 00000000"},
    {"image", CALLS(image, 23, image.data(), image.size()), "00000006 00000017 00000078" + to_hex(image)},
    {"image_of_the_largest_id", CALLS(image, 0x7FFFFFFF, image.data(), image.size()),
     "00000006 7fffffff 00000078" + to_hex(image)},
    {"reconfig", CALLS_ALONE(reconfig), "0000000a 00000000"},
    {"null", CALLS_ALONE(null), "00000000"},
};

std::string bytes_of(const MessageRow &row) { return from_hex(row.hex); }

class CClientMessagesTest : public testing::TestWithParam<MessageRow> {};

TEST_P(CClientMessagesTest, is_built_as_its_golden_bytes_in_just_enough_room) {
  const std::string golden = bytes_of(GetParam());
  std::string room(golden.size() + 1, '#');
  buttondriver_message message{room.data(), golden.size(), 0};
  ASSERT_EQ(GetParam().encode(&message), BUTTONDRIVER_OK);
  EXPECT_EQ(message.size, golden.size());
  EXPECT_EQ(to_hex(room), to_hex(golden + '#'));
}

TEST_P(CClientMessagesTest, is_not_built_where_one_byte_is_missing) {
  const std::string golden = bytes_of(GetParam());
  std::string room(golden.size(), '#');
  buttondriver_message message{room.data(), golden.size() - 1, 77};
  EXPECT_EQ(GetParam().encode(&message), BUTTONDRIVER_NO_ROOM);
  EXPECT_EQ(message.size, 77U);
  EXPECT_EQ(room, std::string(golden.size(), '#'));
}

TEST_P(CClientMessagesTest, is_sent_with_its_length_before_it) {
  const std::string golden = bytes_of(GetParam());
  ScriptedPeer peer;
  OpenClient client(peer);
  EXPECT_EQ(GetParam().send(client.get()), BUTTONDRIVER_OK);
  buttondriver_close(client.get());
  // None of these is longer than 255 bytes.
  const std::string length{'\0', '\0', '\0', static_cast<char>(golden.size())};
  EXPECT_EQ(to_hex(peer.read_to_end()), to_hex(length + golden));
}

TEST_P(CClientMessagesTest, is_refused_without_a_place_or_a_connection) {
  buttondriver_message nowhere{nullptr, 1000, 0};
  buttondriver_client closed{};
  EXPECT_EQ(GetParam().encode(nullptr), BUTTONDRIVER_NULL_POINTER);
  EXPECT_EQ(GetParam().encode(&nowhere), BUTTONDRIVER_NULL_POINTER);
  EXPECT_EQ(GetParam().send(nullptr), BUTTONDRIVER_NULL_POINTER);
  EXPECT_EQ(GetParam().send(&closed), BUTTONDRIVER_NOT_CONNECTED);
}

INSTANTIATE_TEST_SUITE_P(Messages, CClientMessagesTest, testing::ValuesIn(message_rows),
                         [](const auto &row) { return row.param.name; });

TEST(CClientCatalogueTest, there_is_a_function_for_each_message_that_the_daemon_handles) {
  std::set<std::uint32_t> there{12}; // the ping has no row: its answer is waited for
  for (const MessageRow &row : message_rows)
    there.insert(static_cast<unsigned char>(bytes_of(row)[3]));
  std::set<std::uint32_t> handled;
  for (const MessageType &type : catalogue)
    if (type.handling == Handling::server_handles)
      handled.insert(type.opcode);
  EXPECT_EQ(there, handled);
}

TEST(CClientMessageTest, is_sent_as_it_was_built) {
  ScriptedPeer peer;
  OpenClient client(peer);
  char room[BUTTONDRIVER_LARGEST_FIXED_MESSAGE];
  buttondriver_message message{room, sizeof room, 0};
  ASSERT_EQ(buttondriver_encode_led(&message, 5, BUTTONDRIVER_ON), BUTTONDRIVER_OK);
  EXPECT_EQ(buttondriver_send(client.get(), &message), BUTTONDRIVER_OK);
  buttondriver_close(client.get());
  EXPECT_EQ(to_hex(peer.read_to_end()), "00000010"
                                        "00000011000000050000000100000000");
}

TEST(CClientMessageTest, may_be_built_over_its_own_text) {
  char room[64] = "Hello";
  buttondriver_message message{room, sizeof room, 0};
  ASSERT_EQ(buttondriver_encode_text(&message, 0, 0, room), BUTTONDRIVER_OK);
  EXPECT_EQ(to_hex({room, message.size}), "0000000f"
                                          "00000000"
                                          "00000000"
                                          "00000001"
                                          "00000006"
                                          "48656c6c6f00");
}

TEST(CClientMessageTest, of_a_ping_is_its_opcode) {
  char room[4];
  buttondriver_message message{room, sizeof room, 0};
  ASSERT_EQ(buttondriver_encode_ping(&message), BUTTONDRIVER_OK);
  EXPECT_EQ(to_hex({room, message.size}), "0000000c");
  message.capacity = 3;
  EXPECT_EQ(buttondriver_encode_ping(&message), BUTTONDRIVER_NO_ROOM);
}

} // namespace
} // namespace buttondriver::test
