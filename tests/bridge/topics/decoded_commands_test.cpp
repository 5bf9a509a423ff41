// SPDX-License-Identifier: Apache-2.0
// The example of each topic, through the decoding that the daemon uses.
#include "bridge/topics/topic_commands.h"
#include "bridge/topics/topic_table.h"
#include "bytes/view_of.h"
#include "pictures.h"
#include "protocol/decode.h"
#include "protocol/frames.h"

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace buttondriver::bridge {
namespace {

using Check = std::function<void(ByteView message)>;

template <class Record> std::string text_of(ByteView message, std::uint32_t count) {
  return std::string(message.text(type_of<Record>.head_size, count));
}

template <class Record> Check lamp_is(std::int32_t id, std::int32_t state, std::int32_t time = 0) {
  return [=](ByteView message) {
    const auto head = decode<Record>(message);
    EXPECT_EQ(head.opcode, Record::code);
    EXPECT_EQ(head.button_id, id);
    EXPECT_EQ(head.state, state);
    if constexpr (Record::code == BMS_SetLEDState::code) {
      EXPECT_EQ(head.time, time);
    }
  };
}

Check line_is(std::int32_t screen, std::int32_t line, std::uint32_t flag, std::string text) {
  return [=](ByteView message) {
    const auto head = decode<BMS_TFTTextLine>(message);
    EXPECT_EQ(head.opcode, BMS_TFTTextLine::code);
    EXPECT_EQ(head.screen_id, screen);
    EXPECT_EQ(head.line_id, line);
    EXPECT_EQ(head.flag, flag);
    EXPECT_EQ(head.n, text.size() + 1);
    EXPECT_EQ(text_of<BMS_TFTTextLine>(message, head.n), text);
    EXPECT_EQ(message.size(), type_of<BMS_TFTTextLine>.size(head.n));
  };
}

Check part_is(BMS_TFTSubTextLine expected, std::string text) {
  return [=](ByteView message) {
    const auto head = decode<BMS_TFTSubTextLine>(message);
    EXPECT_EQ(head.opcode, BMS_TFTSubTextLine::code);
    EXPECT_EQ(head._screen_id, expected._screen_id);
    EXPECT_EQ(head._line_id, expected._line_id);
    EXPECT_EQ(head._offset, expected._offset);
    EXPECT_EQ(head._num_chars, expected._num_chars);
    EXPECT_EQ(head._text_colour, expected._text_colour);
    EXPECT_EQ(head._back_colour, expected._back_colour);
    EXPECT_EQ(head.n, text.size() + 1);
    EXPECT_EQ(text_of<BMS_TFTSubTextLine>(message, head.n), text);
    EXPECT_EQ(message.size(), type_of<BMS_TFTSubTextLine>.size(head.n));
  };
}

Check picture_is(std::int32_t screen, std::int32_t x, std::int32_t y) {
  return [=](ByteView message) {
    const auto head = decode<BMS_DrawTFTImage>(message);
    EXPECT_EQ(head.opcode, BMS_DrawTFTImage::code);
    EXPECT_EQ(head._screen_id, screen);
    EXPECT_EQ(head._xoffset, x);
    EXPECT_EQ(head._yoffset, y);
    EXPECT_EQ(head._size, 70U);
    EXPECT_EQ(message.size(), type_of<BMS_DrawTFTImage>.size(head._size));
  };
}

Check blackout_is(std::int32_t screen) {
  return [=](ByteView message) {
    const auto head = decode<BMS_BlackoutScreen>(message);
    EXPECT_EQ(head.opcode, BMS_BlackoutScreen::code);
    EXPECT_EQ(head.screen_id, screen);
  };
}

TEST(DecodedCommandsTest, example_of_each_topic_means_what_it_says) {
  const std::map<std::string, Check> checks = {
      {"led/5", lamp_is<BMS_SetLEDState>(5, -1, 500)},
      {"status/3", lamp_is<BMS_SetLEDStatusIndicator>(3, 1)},
      {"toggle/1", lamp_is<BMS_SetLEDToggleIndicator>(1, 1)},
      {"screen/0/line/2", line_is(0, 2, 1, "Ready")},
      {"screen/0/line/3/inverse", line_is(0, 3, 0, "Alarm")},
      {"screen/1/part", part_is({18, 1, 0, 3, 4, 0xFF0000, 0, 0}, "12.5")},
      {"screen/1/part/clock", part_is({18, 1, 7, 0, 8, 0xFFFFFF, 0, 0}, "9:41    ")},
      {"screen/2/image", picture_is(2, 0, 0)},
      {"screen/2/image/63/63", picture_is(2, 63, 63)},
      {"screen/1/blackout", blackout_is(1)},
      {"blackout", blackout_is(-1)},
      {"reconfig", [](ByteView message) { EXPECT_EQ(decode<BMS_Reconfig>(message).opcode, 10U); }},
  };
  for (const TopicRow &row : topic_table) {
    SCOPED_TRACE(row.example);
    const bool is_picture = row.form == PayloadForm::picture;
    const QByteArray payload = is_picture ? test::bytes_of(test::bmp_of_four_pixels) : QByteArray(row.payload);
    const Outcome<Command> command = command_of(row.example, payload);
    ASSERT_TRUE(command) << command.failure().text.toStdString();
    const auto check = checks.find(row.example);
    ASSERT_NE(check, checks.end()) << "what this example means has to be said here";
    const std::vector<QByteArray> messages = FrameCutter(1 << 20).take(command->frame);
    ASSERT_EQ(messages.size(), 1U);
    const ByteView message = view_of(messages.front());
    EXPECT_EQ(message.bigEndian32(0), row.opcode);
    check->second(message);
    EXPECT_EQ(command->target.kind, row.kind);
    EXPECT_EQ(command->newest_wins, row.newest_wins);
  }
  EXPECT_EQ(checks.size(), std::size(topic_table));
}

} // namespace
} // namespace buttondriver::bridge
