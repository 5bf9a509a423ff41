// SPDX-License-Identifier: Apache-2.0
#include "protocol/encoders.h"

#include "support/captured_log.h"
#include "support/hex.h"

#include <gtest/gtest.h>

namespace buttondriver {
namespace {

using test::from_hex;
using test::to_hex;

std::string hex(const QByteArray &bytes) { return bytes.toHex().toStdString(); }
std::string golden(const char *digits) { return to_hex(from_hex(digits)); }

TEST(EncodersTest, fixed_messages_match_golden_bytes) {
  struct Row {
    QByteArray built;
    const char *bytes;
  };
  const Row rows[] = {
      {hton_BMS_SetLEDState(5, -1, 500), "00000011 00000005 ffffffff 000001f4"},
      {hton_BMS_SetLEDStatusIndicator(31, 1), "00000015 0000001f 00000001"},
      {hton_BMS_SetLEDToggleIndicator(1, 0), "00000016 00000001 00000000"},
      {hton_BMS_SetButtonImage(3, 7), "00000007 00000003 00000007"},
      {hton_BMS_BlackoutScreen(-1), "00000010 ffffffff"},
      {hton_BMS_Ping(), "0000000c"},
      {hton_BMS_Reconfig(), "0000000a 00000000"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(hex(row.built), golden(row.bytes));
}

TEST(EncodersTest, texts_are_latin1_with_a_counted_nul) {
  EXPECT_EQ(hex(hton_BMS_TFTTextLine(2, 7, QStringLiteral("Hi"), 1)),
            golden("0000000f 00000002 00000007 00000001 00000003 486900"));
  EXPECT_EQ(hex(hton_BMS_TFTTextLine(0, 0, QString::fromLatin1("\xe9"), 0)),
            golden("0000000f 00000000 00000000 00000000 00000002 e900"));
  EXPECT_EQ(hex(hton_BMS_TFTSubTextLine(-1, 2, 3, 4, QStringLiteral("abcd"), 0xFF0000, 0x00FF00)),
            golden("00000012 ffffffff 00000002 00000003 00000004 00ff0000 0000ff00 00000005 6162636400"));
}

TEST(EncodersTest, an_empty_text_is_21_bytes_with_n_1) {
  EXPECT_EQ(hex(hton_BMS_TFTTextLine(0, 0, QString(), 0)), golden("0000000f 00000000 00000000 00000000 00000001 00"));
}

TEST(EncodersTest, upload_is_132_bytes_whatever_the_image) {
  const QByteArray image(120, '\x5A');
  EXPECT_EQ(hex(hton_BMS_UploadImage(23, image.constData(), 120)), golden("00000006 00000017 00000078") + hex(image));
  const QByteArray long_image(500, '\x5A');
  EXPECT_EQ(hex(hton_BMS_UploadImage(23, long_image.constData(), 500)),
            golden("00000006 00000017 000001f4") + hex(image));
  EXPECT_EQ(hex(hton_BMS_UploadImage(23, image.constData(), 1)),
            golden("00000006 00000017 00000001 5a") + std::string(238, '0'));
  EXPECT_EQ(hton_BMS_UploadImage(0, nullptr, -5).size(), 132);
}

TEST(EncodersTest, draw_image_prints_before_and_after) {
  test::CapturedOutput output;
  const QByteArray message = hton_BMS_DrawTFTImage(1, 10, -20, 3, "BMx");
  EXPECT_EQ(hex(message), golden("00000013 00000001 0000000a ffffffec 00000003 424d78"));
  EXPECT_EQ(output.take(), "Before hton_BMS_DrawTFTImage... size = 3\nAfter hton_BMS_DrawTFTImage...");
}

TEST(EncodersTest, a_picture_that_no_byte_array_can_hold_is_no_message) {
  const test::CapturedOutput output;
  for (const std::uint32_t size : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
    EXPECT_TRUE(hton_BMS_DrawTFTImage(1, 0, 0, size, nullptr).isEmpty()) << size;
}

TEST(EncodersTest, image_list_crosses_its_parameters) {
  EXPECT_EQ(hex(hton_BMS_SetButtonImageList(3, {23, 24}, 0xA, 0xB)),
            golden("0000000d 00000003 00000000 0000000b 0000000a 00000002 00000017 00000018"));
  EXPECT_EQ(hex(hton_BMS_SetButtonImageList(3, {}, 1, 2)),
            golden("0000000d 00000003 00000000 00000002 00000001 00000000"));
}

TEST(EncodersTest, animation_uploads_each_image_then_lists_them) {
  const QByteArray first(120, '\x01');
  const QByteArray second(120, '\x02');
  const std::vector<QByteArray> messages = hton_BMS_SetButtonAnimation(9, {first, second}, 30, 1, 2);
  ASSERT_EQ(messages.size(), 3U);
  EXPECT_EQ(hex(messages[0]), golden("00000006 0000001e 00000078") + hex(first));
  EXPECT_EQ(hex(messages[1]), golden("00000006 0000001f 00000078") + hex(second));
  EXPECT_EQ(hex(messages[2]), golden("0000000d 00000009 00000000 00000002 00000001 00000002 0000001e 0000001f"));
}

} // namespace
} // namespace buttondriver
