// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/protocol_manual.h"

#include "protocol/catalogue.h"

#include <gmock/gmock.h>

#include <string>

namespace buttondriver::documents {
namespace {

using testing::HasSubstr;

TEST(ProtocolManualTest, has_a_section_for_each_message_and_an_example_for_each_that_is_handled) {
  const std::string page = protocol_manual();
  for (const MessageType &type : catalogue) {
    const std::string heading = ".SS " + std::to_string(type.opcode) + ' ' + type.name + '\n';
    const std::size_t begin = page.find(heading);
    ASSERT_NE(begin, std::string::npos) << heading;
    const std::string section = page.substr(begin, page.find("\n.S", begin + 1) - begin);
    for (std::size_t i = 0; i < type.fieldCount(); ++i)
      EXPECT_THAT(section, HasSubstr(std::string("\\fB") + type.fields[i].name + "\\fR")) << heading;
    EXPECT_EQ(section.find("Example: ") != std::string::npos, type.handling != Handling::server_ignores) << heading;
  }
}

TEST(ProtocolManualTest, lists_messages_and_fields) {
  const std::string page = protocol_manual();
  for (const char *rows : {
           "\nBMS_Ping\t12\t4\tT{\nasks for a \\%BMS_PingReply\nT}\n",
           "\nBMS_SetButtonImageList\t13\t24 + 4 x \\fBn\\fR\tT{\nan animation on a button\nT}\n",
           "\n4\ti32\t\\fBbutton_id\\fR\tT{\n0 to 23; \\-1: all buttons\nT}\n",
           "\n12\t120 bytes\t\\fBimage\\fR\tT{\n24 rows of 40 one-bit pixels, 5 bytes a row, ",
           "\n24\t\\fBn\\fR x u32\t\\fBimage_ids\\fR\tT{\nthe ids in the order given\nT}\n",
       })
    EXPECT_THAT(page, HasSubstr(rows));
}

TEST(ProtocolManualTest, takes_an_example_apart) {
  EXPECT_THAT(protocol_manual(), HasSubstr("\nExample: button 5 blinks, half a second on, half a second off.\n"
                                           ".PP\n.RS 4\n.EX\n"
                                           "00 00 00 10               length = 16\n"
                                           "00 00 00 11               opcode = 17\n"
                                           "00 00 00 05               button_id = 5\n"
                                           "ff ff ff ff               state = \\-1\n"
                                           "00 00 01 f4               time = 500\n"
                                           ".EE\n"));
}

TEST(ProtocolManualTest, names_the_limits_with_their_numbers) {
  const std::string page = protocol_manual();
  for (const char *row : {
           "\nA message\n16 MiB, that is L up to 16777216.\nThe message is skipped, ",
           "\nOpen connections\n900, or less ",
           "\nMore waits for the panel than 50 ms of work, 512 tasks, or 16 MiB of texts and pictures\n"
           "A pause, until no more than 25 ms, 256 tasks and 8 MiB are left.\n",
           "\nWork of blinking has waited for more than 250 ms, or 4096 tasks wait\n",
           "\nMore than 1 MiB of the log wait for its reader\nAll connections wait as in a pause, until 256 KiB are "
           "left",
       })
    EXPECT_THAT(page, HasSubstr(row));
}

TEST(ProtocolManualTest, tells_what_bad_input_does) {
  EXPECT_THAT(protocol_manual(), HasSubstr("\nA length of 0\nTakes it as an empty message, "));
}

TEST(ProtocolManualTest, puts_its_limits_into_the_daemons_page) {
  const auto page = with_limits("a\n.\\\" begin limits: x\nold\n.\\\" end limits\n");
  ASSERT_TRUE(page);
  EXPECT_THAT(*page, testing::StartsWith("a\n.\\\" begin limits: x\n.TP\nA message\n16 MiB"));
  EXPECT_THAT(*page, testing::Not(HasSubstr("\nold\n")));
  EXPECT_FALSE(with_limits("a\n"));
}

} // namespace
} // namespace buttondriver::documents
