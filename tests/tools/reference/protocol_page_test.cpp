// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/protocol_page.h"

#include <gmock/gmock.h>

#include <string>

namespace buttondriver::documents {
namespace {

using testing::HasSubstr;

TEST(ProtocolPageTest, lists_messages_of_every_kind) {
  const std::string page = protocol_page();
  for (const char *row : {
           "| 1 | [BMS_PingReply](#1-bms_pingreply) | 4 | the client; the daemon sends it | the answer to a ping |\n",
           "| 12 | [BMS_Ping](#12-bms_ping) | 4 | the daemon | asks for a BMS_PingReply |\n",
           "| 13 | [BMS_SetButtonImageList](#13-bms_setbuttonimagelist) | 24 + 4 x `n` | nobody; the daemon reports it "
           "as unhandled | an animation on a button |\n",
           "| 19 | [BMS_DrawTFTImage](#19-bms_drawtftimage) | 20 + `_size` | the daemon | draws a picture on a screen "
           "|\n",
       })
    EXPECT_THAT(page, HasSubstr(row));
}

TEST(ProtocolPageTest, shows_fields_of_every_type) {
  const std::string page = protocol_page();
  for (const char *row : {
           "| 0 | u32 | `opcode` | which message this is: 17 |\n",
           "| 12 | i32 | `time` | length of each blink phase in milliseconds; not 0 when blinking |\n",
           "| 11 | u8 | `reserved` | always 0 |\n",
           "| 12 | 120 bytes | `image` | 24 rows of 40 one-bit pixels, 5 bytes a row, most significant bit leftmost "
           "|\n",
           "| 16 | `n` bytes | `text` | the text in Latin-1 and its terminating NUL |\n",
           "| 24 | `n` x u32 | `image_ids` | the ids in the order given |\n",
       })
    EXPECT_THAT(page, HasSubstr(row));
}

TEST(ProtocolPageTest, names_the_limits_with_their_numbers) {
  const std::string page = protocol_page();
  for (const char *beginning : {
           "| a message | 16 MiB, that is L up to 16777216 | ",
           "| frames of more than 64 KiB, those of all connections together | 64 MiB that have arrived | ",
           "| answers to pings that a client does not read | 1000000 | ",
           "| messages of one connection in a row | 64, and work for the panel of 10 ms, ",
           "| open connections | 900, ",
       })
    EXPECT_THAT(page, HasSubstr(beginning));
}

TEST(ProtocolPageTest, takes_an_example_apart_field_by_field) {
  EXPECT_THAT(protocol_page(), HasSubstr("```hex\n"
                                         "00 00 00 25                                       length = 37\n"
                                         "00 00 00 12                                       opcode = 18\n"
                                         "00 00 00 01                                       _screen_id = 1\n"
                                         "00 00 00 00                                       _line_id = 0\n"
                                         "00 00 00 03                                       _offset = 3\n"
                                         "00 00 00 04                                       _num_chars = 4\n"
                                         "00 ff 00 00                                       _text_colour = 16711680 "
                                         "(0xff0000)\n"
                                         "00 00 00 00                                       _back_colour = 0\n"
                                         "00 00 00 05                                       n = 5\n"
                                         "31 32 2e 35 00                                    text\n"
                                         "```\n"));
}

TEST(ProtocolPageTest, shows_signed_values_and_breaks_long_ones_into_lines) {
  const std::string page = protocol_page();
  EXPECT_THAT(page, HasSubstr("ff ff ff ff                                       state = -1\n"));
  EXPECT_THAT(page, HasSubstr("42 4d 46 00 00 00 00 00 00 00 36 00 00 00 28 00   image\n"
                              "00 00 02 00 00 00 02 00 00 00 01 00 18 00 00 00\n"));
}

} // namespace
} // namespace buttondriver::documents
