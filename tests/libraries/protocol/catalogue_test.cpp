// SPDX-License-Identifier: Apache-2.0
#include "protocol/catalogue.h"

#include <gtest/gtest.h>

#include <string>

namespace buttondriver {
namespace {

struct PublishedSize {
  std::uint32_t opcode;
  const char *name;
  std::uint64_t size_for_none;
  std::uint64_t size_for_three;
  Handling handling;
};

// Written from the published protocol, not from the table under test.
constexpr PublishedSize published[] = {
    {0, "TYPE_NULL_MESSAGE", 4, 4, Handling::server_handles},
    {1, "BMS_PingReply", 4, 4, Handling::server_sends},
    {4, "BMS_SetButtonColour", 12, 12, Handling::server_ignores},
    {5, "BMS_SetButtonText", 16, 19, Handling::server_ignores},
    {6, "BMS_UploadImage", 132, 132, Handling::server_handles},
    {7, "BMS_SetButtonImage", 12, 12, Handling::server_ignores},
    {8, "BMS_SetParameter", 12, 12, Handling::server_ignores},
    {10, "BMS_Reconfig", 8, 8, Handling::server_handles},
    {11, "BMS_SetButtonColourPair", 24, 24, Handling::server_ignores},
    {12, "BMS_Ping", 4, 4, Handling::server_handles},
    {13, "BMS_SetButtonImageList", 24, 36, Handling::server_ignores},
    {14, "BMS_SetValue", 12, 12, Handling::server_ignores},
    {15, "BMS_TFTTextLine", 20, 23, Handling::server_handles},
    {16, "BMS_BlackoutScreen", 8, 8, Handling::server_handles},
    {17, "BMS_SetLEDState", 16, 16, Handling::server_handles},
    {18, "BMS_TFTSubTextLine", 32, 35, Handling::server_handles},
    {19, "BMS_DrawTFTImage", 20, 23, Handling::server_handles},
    {21, "BMS_SetLEDStatusIndicator", 12, 12, Handling::server_handles},
    {22, "BMS_SetLEDToggleIndicator", 12, 12, Handling::server_handles},
};

TEST(CatalogueTest, holds_every_published_message) {
  for (const PublishedSize &row : published) {
    const MessageType *type = find_message_type(row.opcode);
    ASSERT_NE(type, nullptr) << row.opcode;
    EXPECT_STREQ(type->name, row.name);
    EXPECT_EQ(type->size(0), row.size_for_none) << row.name;
    EXPECT_EQ(type->size(3), row.size_for_three) << row.name;
    EXPECT_EQ(type->handling, row.handling) << row.name;
  }
}

TEST(CatalogueTest, leaves_the_opcodes_free_that_do_not_exist) {
  for (const std::uint32_t opcode : {2U, 3U, 9U, 20U, 0x80000000U, 0xFFFFFFFFU})
    EXPECT_EQ(find_message_type(opcode), nullptr) << opcode;
}

TEST(CatalogueTest, counts_do_not_overflow_a_size) {
  EXPECT_EQ(find_message_type(13)->size(0xFFFFFFFFU), 24U + 4ULL * 0xFFFFFFFFU);
}

} // namespace
} // namespace buttondriver
