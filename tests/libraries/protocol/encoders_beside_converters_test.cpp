// SPDX-License-Identifier: Apache-2.0
// Some names are declared in both headers. Whatever is passed, a program that includes both gets the one it means.

#include "protocol/converters.h"
#include "protocol/encoders.h"

#include "support/hex.h"

#include <gtest/gtest.h>

namespace buttondriver {
namespace {

using test::from_hex;
using test::to_hex;

std::string hex(const QByteArray &bytes) { return bytes.toHex().toStdString(); }

enum Place { first_place, second_place };

TEST(EncodersBesideConvertersTest, integers_of_any_type_mean_the_encoder) {
  const std::int32_t number = 0;
  const std::uint32_t id = 0;
  const std::string status = to_hex(from_hex("00000015 00000000 00000000"));
  const std::string toggle = to_hex(from_hex("00000016 00000000 00000000"));
  const std::string image = to_hex(from_hex("00000007 00000000 00000000"));
  for (const QByteArray &message :
       {hton_BMS_SetLEDStatusIndicator(0, 0), hton_BMS_SetLEDStatusIndicator(0U, 0U),
        hton_BMS_SetLEDStatusIndicator(0L, 0L), hton_BMS_SetLEDStatusIndicator(0, 0U),
        hton_BMS_SetLEDStatusIndicator(number, 0), hton_BMS_SetLEDStatusIndicator(0, false),
        hton_BMS_SetLEDStatusIndicator(first_place, first_place), hton_BMS_SetLEDStatusIndicator(first_place, 0)})
    EXPECT_EQ(hex(message), status);
  for (const QByteArray &message :
       {hton_BMS_SetLEDToggleIndicator(0, 0), hton_BMS_SetLEDToggleIndicator(0U, 0U),
        hton_BMS_SetLEDToggleIndicator(0L, 0L), hton_BMS_SetLEDToggleIndicator(0U, 0),
        hton_BMS_SetLEDToggleIndicator(0, number), hton_BMS_SetLEDToggleIndicator(0, false)})
    EXPECT_EQ(hex(message), toggle);
  for (const QByteArray &message :
       {hton_BMS_SetButtonImage(0, 0), hton_BMS_SetButtonImage(0U, 0U), hton_BMS_SetButtonImage(0L, 0L),
        hton_BMS_SetButtonImage(0, 0U), hton_BMS_SetButtonImage(id, 0), hton_BMS_SetButtonImage(0, number),
        hton_BMS_SetButtonImage(first_place, first_place)})
    EXPECT_EQ(hex(message), image);
  EXPECT_EQ(hex(hton_BMS_SetLEDStatusIndicator(31U, -1L)), to_hex(from_hex("00000015 0000001f ffffffff")));
  EXPECT_EQ(hex(hton_BMS_SetLEDToggleIndicator(1U, second_place)), to_hex(from_hex("00000016 00000001 00000001")));
  EXPECT_EQ(hex(hton_BMS_SetButtonImage(-1, 7)), to_hex(from_hex("00000007 ffffffff 00000007")));
}

TEST(EncodersBesideConvertersTest, other_encoders_have_arguments_of_their_own) {
  EXPECT_EQ(hton_BMS_SetLEDState(0, 0, 0).size(), 16);
  EXPECT_EQ(hton_BMS_UploadImage(0, nullptr, 0).size(), 132);
  EXPECT_EQ(hton_BMS_UploadImage(0, 0, 0).size(), 132);
  EXPECT_EQ(hton_BMS_TFTTextLine(0, 0, QString(), 0).size(), 21);
  EXPECT_EQ(hton_BMS_TFTSubTextLine(0, 0, 0, 0, QString(), 0, 0).size(), 33);
  EXPECT_EQ(hton_BMS_BlackoutScreen(0).size(), 8);
  EXPECT_EQ(hton_BMS_Ping().size(), 4);
  EXPECT_EQ(hton_BMS_DrawTFTImage(0, 0, 0, 0, nullptr).size(), 20);
  EXPECT_EQ(hton_BMS_Reconfig().size(), 8);
  EXPECT_EQ(hton_BMS_SetButtonImageList(0, {}, 0, 0).size(), 24);
}

TEST(EncodersBesideConvertersTest, pointers_mean_the_converter) {
  BMS_SetLEDStatusIndicator status{21, 31, 1};
  BMS_SetLEDToggleIndicator toggle{22, 1, 0};
  BMS_SetButtonImage image{7, 3, 7};
  hton_BMS_SetLEDStatusIndicator(&status, &status);
  hton_BMS_SetLEDToggleIndicator(&toggle, &toggle);
  hton_BMS_SetButtonImage(&image, &image);
  EXPECT_EQ(to_hex({reinterpret_cast<const char *>(&status), 12}), to_hex(from_hex("00000015 0000001f 00000001")));
  EXPECT_EQ(to_hex({reinterpret_cast<const char *>(&toggle), 12}), to_hex(from_hex("00000016 00000001 00000000")));
  EXPECT_EQ(to_hex({reinterpret_cast<const char *>(&image), 12}), to_hex(from_hex("00000007 00000003 00000007")));
}

} // namespace
} // namespace buttondriver
