// SPDX-License-Identifier: Apache-2.0
#include "protocol/converters.h"

#include "support/hex.h"

#include <gtest/gtest.h>

namespace buttondriver {
namespace {

using test::from_hex;
using test::to_hex;
using Converter = void (*)(void *, const void *);

struct Row {
  const char *name;
  Converter to_network;
  Converter to_host;
  const char *host; // on a little-endian machine
  const char *network;
};

// Both columns written by hand.
const Row rows[] = {
    {"PingReply", hton_BMS_PingReply, ntoh_BMS_PingReply, "01000000", "00000001"},
    {"SetButtonColour", hton_BMS_SetButtonColour, ntoh_BMS_SetButtonColour, "04000000 05000000 11 22 33 00",
     "00000004 00000005 11 22 33 00"},
    {"SetButtonText", hton_BMS_SetButtonText, ntoh_BMS_SetButtonText, "05000000 ffffffff 78563412 03000000 416200",
     "00000005 ffffffff 12345678 00000003 416200"},
    {"SetButtonImage", hton_BMS_SetButtonImage, ntoh_BMS_SetButtonImage, "07000000 01000000 17000000",
     "00000007 00000001 00000017"},
    {"SetParameter", hton_BMS_SetParameter, ntoh_BMS_SetParameter, "08000000 09000000 01000000",
     "00000008 00000009 00000001"},
    {"Reconfig", hton_BMS_Reconfig, ntoh_BMS_Reconfig, "0a000000 00000000", "0000000a 00000000"},
    {"SetButtonColourPair", hton_BMS_SetButtonColourPair, ntoh_BMS_SetButtonColourPair,
     "0b000000 02000000 01020300 f4010000 04050600 e8030000", "0000000b 00000002 01020300 000001f4 04050600 000003e8"},
    {"Ping", hton_BMS_Ping, ntoh_BMS_Ping, "0c000000", "0000000c"},
    {"SetButtonImageList", hton_BMS_SetButtonImageList, ntoh_BMS_SetButtonImageList,
     "0d000000 03000000 00000000 0b000000 0a000000 02000000 17000000 18000000",
     "0000000d 00000003 00000000 0000000b 0000000a 00000002 00000017 00000018"},
    {"SetValue", hton_BMS_SetValue, ntoh_BMS_SetValue, "0e000000 04030201 08070605", "0000000e 01020304 05060708"},
    {"TFTTextLine", hton_BMS_TFTTextLine, ntoh_BMS_TFTTextLine, "0f000000 ffffffff 07000000 01000000 03000000 486900",
     "0000000f ffffffff 00000007 00000001 00000003 486900"},
    {"BlackoutScreen", hton_BMS_BlackoutScreen, ntoh_BMS_BlackoutScreen, "10000000 02000000", "00000010 00000002"},
    {"SetLEDState", hton_BMS_SetLEDState, ntoh_BMS_SetLEDState, "11000000 05000000 ffffffff f4010000",
     "00000011 00000005 ffffffff 000001f4"},
    {"TFTSubTextLine", hton_BMS_TFTSubTextLine, ntoh_BMS_TFTSubTextLine,
     "12000000 01000000 02000000 03000000 04000000 0000ff00 00ff0000 02000000 5800",
     "00000012 00000001 00000002 00000003 00000004 00ff0000 0000ff00 00000002 5800"},
    {"DrawTFTImage", hton_BMS_DrawTFTImage, ntoh_BMS_DrawTFTImage, "13000000 00000000 0a000000 ecffffff 02000000 424d",
     "00000013 00000000 0000000a ffffffec 00000002 424d"},
    {"SetLEDStatusIndicator", hton_BMS_SetLEDStatusIndicator, ntoh_BMS_SetLEDStatusIndicator,
     "15000000 1f000000 01000000", "00000015 0000001f 00000001"},
    {"SetLEDToggleIndicator", hton_BMS_SetLEDToggleIndicator, ntoh_BMS_SetLEDToggleIndicator,
     "16000000 01000000 00000000", "00000016 00000001 00000000"},
};

TEST(ConvertersTest, convert_both_ways_between_places) {
  for (const Row &row : rows) {
    const std::string host = from_hex(row.host);
    const std::string network = from_hex(row.network);
    std::string result(host.size(), '\xEE');
    row.to_network(result.data(), host.data());
    EXPECT_EQ(to_hex(result), to_hex(network)) << row.name;
    result.assign(host.size(), '\xEE');
    row.to_host(result.data(), network.data());
    EXPECT_EQ(to_hex(result), to_hex(host)) << row.name;
  }
}

TEST(ConvertersTest, convert_both_ways_in_place) {
  for (const Row &row : rows) {
    std::string place = from_hex(row.host);
    row.to_network(place.data(), place.data());
    EXPECT_EQ(to_hex(place), to_hex(from_hex(row.network))) << row.name;
    row.to_host(place.data(), place.data());
    EXPECT_EQ(to_hex(place), to_hex(from_hex(row.host))) << row.name;
  }
}

TEST(ConvertersTest, upload_image_keeps_the_image_bytes) {
  const std::string image(120, '\xA5');
  const std::string host = from_hex("06000000 17000000 78000000") + image;
  std::string network(132, '\0');
  hton_BMS_UploadImage(network.data(), host.data());
  EXPECT_EQ(to_hex(network), to_hex(from_hex("00000006 00000017 00000078") + image));
  ntoh_BMS_UploadImage(network.data(), network.data());
  EXPECT_EQ(to_hex(network), to_hex(host));
}

TEST(ConvertersTest, the_generic_layout_is_an_opcode_a_count_and_bytes) {
  EXPECT_EQ(generic_layout.size(3), 11U);
  const std::string host = from_hex("34120000 03000000 aabbcc");
  std::string network(host.size(), '\0');
  host_to_network(generic_layout, network.data(), host.data());
  EXPECT_EQ(to_hex(network), to_hex(from_hex("00001234 00000003 aabbcc")));
  network_to_host(generic_layout, network.data(), network.data());
  EXPECT_EQ(to_hex(network), to_hex(host));
}

TEST(ConvertersTest, record_of_a_colour_pair_is_swapped_with_the_field_that_is_not_sent) {
  const std::string host = from_hex("0b000000 02000000 01020300 f4010000 04050600 e8030000 efbe");
  const std::string network = from_hex("0000000b 00000002 01020300 000001f4 04050600 000003e8 beef");
  BMS_SetButtonColourPair source{};
  BMS_SetButtonColourPair record{};
  const auto bytes_of_record = [&] { return to_hex({reinterpret_cast<const char *>(&record), 26}); };

  host.copy(reinterpret_cast<char *>(&source), host.size());
  hton_BMS_SetButtonColourPair(&record, &source);
  EXPECT_EQ(bytes_of_record(), to_hex(network));
  ntoh_BMS_SetButtonColourPair(&record, &record);
  EXPECT_EQ(bytes_of_record(), to_hex(host));
  hton_BMS_SetButtonColourPair(&record, &record);
  ntoh_BMS_SetButtonColourPair(&source, &record);
  EXPECT_EQ(source.not_transmitted, 0xBEEF);
}

TEST(ConvertersTest, message_of_a_colour_pair_ends_after_24_bytes) {
  EXPECT_EQ(message_size<BMS_SetButtonColourPair>(), 24U);
  std::string place(24 + 8, '\xA5');
  hton_BMS_SetButtonColourPair(place.data(), place.data());
  ntoh_BMS_SetButtonColourPair(place.data(), std::string(24, '\0').data());
  EXPECT_EQ(place, std::string(24, '\0') + std::string(8, '\xA5'));
}

} // namespace
} // namespace buttondriver
