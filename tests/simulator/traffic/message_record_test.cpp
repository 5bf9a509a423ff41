// SPDX-License-Identifier: Apache-2.0
#include "simulator/traffic/message_record.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace buttondriver::simulator {
namespace {

struct Row {
  const char *title;
  QByteArray hex;
  const char *json; ///< without "time", "client" and "size"
};

std::ostream &operator<<(std::ostream &stream, const Row &row) { return stream << row.title; }

class MessageRecordTest : public testing::TestWithParam<Row> {};

TEST_P(MessageRecordTest, has_its_name_and_fields) {
  const QByteArray bytes = QByteArray::fromHex(GetParam().hex);
  QJsonObject object = to_json({1700000000123, 3000, bytes.size(), bytes});
  EXPECT_EQ(object.take(QStringLiteral("time")).toDouble(), 1700000000123.0);
  EXPECT_EQ(object.take(QStringLiteral("client")).toInt(), 3000);
  EXPECT_EQ(object.take(QStringLiteral("size")).toInt(), static_cast<int>(bytes.size()));
  EXPECT_EQ(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString(),
            QJsonDocument::fromJson(GetParam().json).toJson(QJsonDocument::Compact).toStdString());
}

const Row rows[] = {
    {"ping", "0000000c", R"({"name":"BMS_Ping","fields":[["opcode",12]]})"},
    {"signed_fields", "00000010 ffffffff",
     R"({"name":"BMS_BlackoutScreen","fields":[["opcode",16],["screen_id",-1]]})"},
    {"unsigned_fields", "00000007 ffffffff 00000002",
     R"({"name":"BMS_SetButtonImage","fields":[["opcode",7],["button_id",4294967295],["image_id",2]]})"},
    {"single_bytes", "00000004 00000001 ff 02 03 00",
     R"({"name":"BMS_SetButtonColour","fields":
       [["opcode",4],["button_id",1],["value_1",255],["value_2",2],["value_3",3],["reserved",0]]})"},
    {"a_text_up_to_its_end", "0000000f 00000002 00000001 00000001 00000005 41e42263 00",
     R"({"name":"BMS_TFTTextLine","text":"A\u00e4\"c","fields":
       [["opcode",15],["screen_id",2],["line_id",1],["flag",1],["n",5]]})"},
    {"colours", "00000012 00000000 00000000 00000000 00000001 00ffc25c 0000000a 00000002 4100",
     R"({"name":"BMS_TFTSubTextLine","text":"A","fields":
       [["opcode",18],["_screen_id",0],["_line_id",0],["_offset",0],["_num_chars",1],
        ["_text_colour","0xffc25c"],["_back_colour","0x00000a"],["n",2]]})"},
    {"a_picture_by_its_size_only", "00000013 00000000 00000001 00000002 00000003 424d00",
     R"({"name":"BMS_DrawTFTImage","rest":3,"fields":
       [["opcode",19],["_screen_id",0],["_xoffset",1],["_yoffset",2],["_size",3]]})"},
    {"bytes_after_a_null_message", "00000000 0102", R"({"name":"TYPE_NULL_MESSAGE","rest":2,"fields":[["opcode",0]]})"},
    {"a_head_that_is_cut_short", "00000011 00000005",
     R"({"name":"BMS_SetLEDState","fields":[["opcode",17],["button_id",5],["state",0],["time",0]]})"},
    {"an_opcode_that_does_not_exist", "00000063 00000001", R"({"name":"","fields":[["opcode",99]]})"},
    {"nothing", "", R"({"name":"TYPE_NULL_MESSAGE","fields":[["opcode",0]]})"},
};

INSTANTIATE_TEST_SUITE_P(Messages, MessageRecordTest, testing::ValuesIn(rows),
                         [](const auto &row) { return std::string(row.param.title); });

} // namespace
} // namespace buttondriver::simulator
