// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/messages/by_name/message_command.h"

#include "buttonctl/commands/command_line.h"
#include "buttonctl/messages/by_name/message_fields.h"
#include "buttonctl/support/working_folder.h"
#include "support/hex.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

std::string golden(const std::string &digits) { return test::to_hex(test::from_hex(digits)); }

class MessageCommandTest : public testing::Test {
protected:
  MessageCommandTest() {
    _folder.write("bits.raw", QByteArray(120, '\x5A'));
    _folder.write("short.raw", QByteArray(119, '\x5A'));
    _folder.write("picture.bmp", "BM?");
    _folder.write("empty.bmp", "");
  }

  /// The frame in hexadecimal, or what was wrong.
  std::string frame_of(const QString &line) const {
    const Outcome<Steps> steps = parse_batch_line({message_command()}, "message " + line.toUtf8());
    if (!steps)
      return steps.failure().text.toStdString();
    EXPECT_EQ(steps->size(), 1U);
    EXPECT_EQ(steps->front().kind, Step::Kind::send);
    return test::to_hex(steps->front().bytes.toStdString());
  }

  const test::WorkingFolder _folder;
};

TEST_F(MessageCommandTest, puts_the_fields_where_they_belong) {
  std::string bits;
  for (int i = 0; i < 120; ++i)
    bits += "5a";
  struct Row {
    const char *line;
    std::string frame;
  };
  const Row rows[] = {
      {"TYPE_NULL_MESSAGE", "00000004 00000000"},
      {"BMS_PingReply", "00000004 00000001"},
      {"BMS_SetButtonColour button_id=299 value_1=1 value_2=0xff value_3=-1", "0000000c 00000004 0000012b 01ffff00"},
      {"BMS_SetButtonText button_id=0xFFFFFFFF text_value=2 text='a b'",
       "00000014 00000005 ffffffff 00000002 00000004 61206200"},
      {"BMS_UploadImage image=bits.raw image_id=30 size=120", "00000084 00000006 0000001e 00000078" + bits},
      {"BMS_SetButtonImage image_id=7 button_id=1", "0000000c 00000007 00000001 00000007"},
      {"BMS_SetParameter parameter=8 value=1", "0000000c 00000008 00000008 00000001"},
      {"BMS_Reconfig", "00000008 0000000a 00000000"},
      {"BMS_Reconfig reserved=1", "00000008 0000000a 00000001"},
      {"BMS_SetButtonColourPair button_id=1 first_value_2=2 first_time=3 second_reserved=4 second_time=5",
       "00000018 0000000b 00000001 00020000 00000003 00000004 00000005"},
      {"BMS_Ping", "00000004 0000000c"},
      {"BMS_SetButtonImageList button_id=1 parameter_b=2 parameter_a=3 image_ids=1,0x10,-1",
       "00000024 0000000d 00000001 00000000 00000002 00000003 00000003 00000001 00000010 ffffffff"},
      {"BMS_SetButtonImageList image_ids=", "00000018 0000000d 00000000 00000000 00000000 00000000 00000000"},
      {"BMS_SetValue value_2=4294967295", "0000000c 0000000e 00000000 ffffffff"},
      {"BMS_TFTTextLine screen_id=-1 line_id=2 flag=1 text=\xc3\xa9",
       "00000016 0000000f ffffffff 00000002 00000001 00000002 e900"},
      {"BMS_TFTTextLine", "00000015 0000000f 00000000 00000000 00000000 00000001 00"},
      {"BMS_BlackoutScreen screen_id=99", "00000008 00000010 00000063"},
      {"BMS_SetLEDState button_id=5 state=-1 time=500", "00000010 00000011 00000005 ffffffff 000001f4"},
      {"BMS_SetLEDState time=-2147483648", "00000010 00000011 00000000 00000000 80000000"},
      {"BMS_TFTSubTextLine _offset=3 _num_chars=2 _text_colour=0xFF0000 text=a=b",
       "00000024 00000012 00000000 00000000 00000003 00000002 00ff0000 00000000 00000004 613d6200"},
      {"BMS_DrawTFTImage _xoffset=1 _yoffset=-1 image=picture.bmp",
       "00000017 00000013 00000000 00000001 ffffffff 00000003 424d3f"},
      {"BMS_DrawTFTImage image=empty.bmp", "00000014 00000013 00000000 00000000 00000000 00000000"},
      {"BMS_SetLEDStatusIndicator button_id=1 state=1", "0000000c 00000015 00000001 00000001"},
      {"BMS_SetLEDToggleIndicator button_id=1 state=1", "0000000c 00000016 00000001 00000001"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(frame_of(QString::fromUtf8(row.line)), golden(row.frame)) << row.line;
}

TEST_F(MessageCommandTest, sends_every_row_of_the_catalogue) {
  for (const MessageType &type : catalogue) {
    const int size = static_cast<int>(type.head_size) + (type.counted == Counted::text_bytes ? 1 : 0);
    const std::string start = test::to_hex(std::string{0, 0, 0, static_cast<char>(size)}) +
                              test::to_hex(std::string{0, 0, 0, static_cast<char>(type.opcode)});
    const std::string frame = frame_of(QLatin1String(type.name));
    EXPECT_EQ(frame.substr(0, start.size()), start) << type.name;
    EXPECT_EQ(frame.size(), 2U * (4U + static_cast<std::size_t>(size))) << type.name;
  }
}

TEST_F(MessageCommandTest, refuses_what_no_message_has_with_the_reason) {
  struct Row {
    const char *line;
    const char *text;
  };
  const Row rows[] = {
      {"", "message: NAME is missing; see 'buttonctl message --help'"},
      {"bms_ping", "message: unknown message 'bms_ping'; see 'buttonctl message --help'"},
      {"BMS_Ping now", "message: 'now' must be FIELD=VALUE"},
      {"BMS_Ping opcode=12", "message: BMS_Ping has no field 'opcode' to be given; see 'buttonctl message --help'"},
      {"BMS_TFTTextLine n=1", "message: BMS_TFTTextLine has no field 'n' to be given; see 'buttonctl message --help'"},
      {"BMS_BlackoutScreen screen_id=1 screen_id=1", "message: screen_id is given twice"},
      {"BMS_BlackoutScreen screen_id=",
       "message: screen_id must be a number from -2147483648 to 4294967295, or hexadecimal after 0x, not ''"},
      {"BMS_BlackoutScreen screen_id=4294967296",
       "message: screen_id must be a number from -2147483648 to 4294967295, or hexadecimal after 0x, not '4294967296'"},
      {"BMS_BlackoutScreen screen_id=-2147483649",
       "message: screen_id must be a number from -2147483648 to 4294967295, or hexadecimal after 0x, not "
       "'-2147483649'"},
      {"BMS_BlackoutScreen screen_id=0x-1",
       "message: screen_id must be a number from -2147483648 to 4294967295, or hexadecimal after 0x, not '0x-1'"},
      {"BMS_SetButtonColour value_1=256",
       "message: value_1 must be a number from -128 to 255, or hexadecimal after 0x, not '256'"},
      {"BMS_SetButtonColour value_1=a",
       "message: value_1 must be a number from -128 to 255, or hexadecimal after 0x, not 'a'"},
      {"BMS_SetButtonImageList image_ids=1,,2",
       "message: image_ids must be a number from -2147483648 to 4294967295, or hexadecimal after 0x, not ''"},
      {"BMS_UploadImage image=short.raw", "message: image must have 120 bytes, but the file has 119"},
      {"BMS_UploadImage image=no.raw", "message: cannot read 'no.raw': No such file or directory"},
      {"BMS_DrawTFTImage image=no.bmp", "message: cannot read 'no.bmp': No such file or directory"},
      {"BMS_TFTTextLine text=\xe2\x82\xac", "message: text must be Latin-1 (U+0000 to U+00FF); '\xe2\x82\xac' (U+20AC) "
                                            "is not"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(frame_of(QString::fromUtf8(row.line)), row.text);
}

TEST_F(MessageCommandTest, help_lists_every_message_and_what_can_be_given) {
  const QString help = message_command().details;
  for (const MessageType &type : catalogue)
    EXPECT_TRUE(help.contains(QStringLiteral("\n  %1 ").arg(QLatin1String(type.name)))) << type.name;
  EXPECT_TRUE(help.contains(QLatin1String("\n      state                  1: on; -1: blinking; else off\n")))
      << help.toStdString();
  EXPECT_TRUE(help.contains(QLatin1String("\n      image_ids              numbers, a comma between them\n")));
  EXPECT_FALSE(help.contains(QLatin1String("\n      opcode ")));
  EXPECT_FALSE(help.contains(QLatin1String("\n      n ")));
}

} // namespace
} // namespace buttondriver::buttonctl
