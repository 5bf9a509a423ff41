// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/command_table.h"
#include "buttonctl/commands/command_line.h"
#include "buttonctl/decode/message_forms.h"
#include "protocol/frames.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

QByteArray bytes_of(const char *hex) { return QByteArray::fromHex(hex); }

TEST(DecodedMessageTest, is_told_in_words_and_makes_the_same_bytes_in_a_batch) {
  struct Row {
    const char *hex;
    const char *text;
    const char *batch;
    const char *fault;
  };
  const Row rows[] = {
      {"00000000", "TYPE_NULL_MESSAGE", "null", ""},
      {"00000000 01ff", "TYPE_NULL_MESSAGE rest=01ff", "null 01ff", ""},
      {"0000000c", "BMS_Ping", "message BMS_Ping", ""},
      {"00000010 ffffffff", "BMS_BlackoutScreen screen_id=-1 (all screens)", "message BMS_BlackoutScreen screen_id=-1",
       ""},
      {"00000011 00000005 ffffffff 000001f4", "BMS_SetLEDState button_id=5 state=-1 (blinking) time=500",
       "message BMS_SetLEDState button_id=5 state=-1 time=500", ""},
      {"00000011 00000005 00000007 00000000", "BMS_SetLEDState button_id=5 state=7 (off) time=0",
       "message BMS_SetLEDState button_id=5 state=7 time=0", ""},
      {"0000000f 00000001 00000002 00000000 00000006 4869 2027 e9 00",
       "BMS_TFTTextLine screen_id=1 line_id=2 flag=0 (black on white) n=6 text='Hi '\u00e9'",
       "message BMS_TFTTextLine screen_id=1 line_id=2 flag=0 text=\"Hi '\u00e9\"", ""},
      {"0000000f 00000001 00000002 00000001 00000004 225c23 00",
       "BMS_TFTTextLine screen_id=1 line_id=2 flag=1 (white on black) n=4 text='\"\\#'",
       "message BMS_TFTTextLine screen_id=1 line_id=2 flag=1 text=\"\\\"\\\\#\"", ""},
      {"00000012 00000000 00000001 00000002 00000003 00ff8001 0000000a 00000001 00",
       "BMS_TFTSubTextLine _screen_id=0 _line_id=1 _offset=2 _num_chars=3 _text_colour=0xff8001 "
       "_back_colour=0x00000a n=1 text=''",
       "message BMS_TFTSubTextLine _screen_id=0 _line_id=1 _offset=2 _num_chars=3 _text_colour=0xff8001 "
       "_back_colour=0x00000a text=\"\"",
       ""},
      {"0000000d ffffffff 00000000 00000001 00000002 00000002 00000007 80000000",
       "BMS_SetButtonImageList button_id=4294967295 (all buttons) reserved=0 parameter_b=1 parameter_a=2 n=2 "
       "image_ids=7,2147483648",
       "message BMS_SetButtonImageList button_id=4294967295 reserved=0 parameter_b=1 parameter_a=2 "
       "image_ids=7,2147483648",
       ""},
      // What no words of a batch say is sent as it is.
      {"00000013 00000000 ffffffff 00000001 00000002 424d",
       "BMS_DrawTFTImage _screen_id=0 _xoffset=-1 _yoffset=1 _size=2 image=2 bytes",
       "raw 0000001300000000ffffffff0000000100000002424d  # BMS_DrawTFTImage", ""},
      {"0000000f 00000001 00000002 00000001 00000003 411b 00",
       "BMS_TFTTextLine screen_id=1 line_id=2 flag=1 (white on black) n=3 text='A\\x1b'",
       "raw 0000000f00000001000000020000000100000003411b00  # BMS_TFTTextLine", ""},
      {"0000000f 00000001 00000002 00000001 00000002 4142",
       "BMS_TFTTextLine screen_id=1 line_id=2 flag=1 (white on black) n=2 text='AB'",
       "raw 0000000f000000010000000200000001000000024142  # BMS_TFTTextLine", ""},
      // Broken ones.
      {"", "unknown", "raw ''", "has 0 bytes, too few for an opcode"},
      {"0000", "unknown 0000", "raw 0000", "has 2 bytes, too few for an opcode"},
      {"00000014 01", "unknown 0000001401", "raw 0000001401", "has the opcode 20, which does not exist"},
      {"00000011 00000005 ffff", "BMS_SetLEDState button_id=5", "raw 0000001100000005ffff  # BMS_SetLEDState",
       "is cut off: its fields take 16 bytes, but it has 10"},
      {"0000000f 00000001 00000002 00000001 00000006 4869",
       "BMS_TFTTextLine screen_id=1 line_id=2 flag=1 (white on black) n=6 text='Hi'",
       "raw 0000000f000000010000000200000001000000064869  # BMS_TFTTextLine",
       "is cut off: n announces 6 bytes, but 2 follow"},
      {"0000000d 00000001 00000000 00000001 00000002 ffffffff 00000007",
       "BMS_SetButtonImageList button_id=1 reserved=0 parameter_b=1 parameter_a=2 n=4294967295 image_ids=7",
       "raw 0000000d0000000100000000000000010000000"
       "2ffffffff00000007  # BMS_SetButtonImageList",
       "is cut off: n announces 17179869180 bytes, but 4 follow"},
      {"0000000c 00", "BMS_Ping rest=00", "raw 0000000c00  # BMS_Ping", "ends after 4 bytes, but 1 more follow"},
  };
  for (const Row &row : rows) {
    const DecodedMessage message = decode_message(bytes_of(row.hex));
    EXPECT_EQ(message_text(message).toStdString(), row.text);
    EXPECT_EQ(batch_line(message, command_table()).toStdString(), row.batch);
    EXPECT_EQ(message.fault.toStdString(), row.fault) << row.hex;
  }
}

/// A message of each type, every byte of its fields another one.
std::vector<QByteArray> one_of_each() {
  std::vector<QByteArray> messages;
  for (const MessageType &type : catalogue) {
    QByteArray message;
    for (std::uint32_t place = 0; place < type.head_size; ++place)
      message += static_cast<char>(place < 3 ? 0 : place == 3 ? type.opcode : 0x80 + place);
    if (type.counted != Counted::nothing) {
      message.replace(static_cast<int>(type.head_size) - 4, 4, bytes_of("00000004"));
      message += type.counted == Counted::image_ids ? bytes_of("00000001 ffffffff 80000000 12345678") : "a'\"";
      message += type.counted == Counted::image_ids ? QByteArray() : QByteArray(1, '\0');
    }
    messages.push_back(message);
  }
  return messages;
}

TEST(DecodedMessageTest, of_every_type_makes_the_same_bytes_in_a_batch) {
  for (const QByteArray &message : one_of_each()) {
    const DecodedMessage decoded = decode_message(message);
    EXPECT_EQ(decoded.fault.toStdString(), "");
    const QString line = batch_line(decoded, command_table());
    const Outcome<Steps> steps = parse_batch_line(command_table(), line.toUtf8());
    ASSERT_TRUE(steps) << line.toStdString();
    ASSERT_EQ(steps->size(), 1U);
    EXPECT_EQ(steps->front().bytes.toHex().toStdString(), framed(message).toHex().toStdString());
    const bool has_a_file = line.contains(QLatin1String("UploadImage")) || line.contains(QLatin1String("DrawTFTImage"));
    EXPECT_EQ(line.startsWith(QLatin1String("raw ")), has_a_file) << line.toStdString();
  }
}

std::string json_of(const FoundPlace &place, const char *hex) {
  const FoundMessage found{place, 1500000, 2, bytes_of(hex)};
  return QJsonDocument(message_json(found, decode_message(found.bytes))).toJson(QJsonDocument::Compact).toStdString();
}

TEST(DecodedMessageTest, is_told_as_json) {
  EXPECT_EQ(json_of({12, 0}, "0000000f ffffffff 00000002 00000001 00000003 41e9 00"),
            R"({"fields":[["opcode",15],["screen_id",-1],["line_id",2],["flag",1],["n",3]],)"
            "\"name\":\"BMS_TFTTextLine\",\"offset\":12,\"size\":23,\"text\":\"A\u00e9\"}");
  EXPECT_EQ(json_of({0, 3}, "00000013 00000000 00000000 00000000 00000003 424d"),
            R"({"connection":2,"fault":"is cut off: _size announces 3 bytes, but 2 follow",)"
            R"("fields":[["opcode",19],["_screen_id",0],["_xoffset",0],["_yoffset",0],["_size",3]],"line":3,)"
            R"("name":"BMS_DrawTFTImage","rest":2,"size":22,"time_us":1500000})");
  EXPECT_EQ(json_of({0, 0}, "00000014"), R"({"fault":"has the opcode 20, which does not exist","fields":[],)"
                                         R"("name":"","offset":0,"size":4})");
}

} // namespace
} // namespace buttondriver::buttonctl
