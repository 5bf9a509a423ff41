// SPDX-License-Identifier: Apache-2.0
#include "simulator/traffic/text_memory.h"

#include "support/hex.h"

#include <gmock/gmock.h>

#include <initializer_list>

namespace buttondriver::simulator {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TextMemoryTest : public testing::Test {
protected:
  void follow(std::initializer_list<const char *> hex_messages) {
    for (const char *hex : hex_messages) {
      const std::string bytes = test::from_hex(hex);
      memory.follow(ByteView(bytes.data(), bytes.size()));
    }
  }
  const TextMemory::Lines &lines(std::size_t screen) const { return memory.screens()[screen]; }

  TextMemory memory;
};

// BMS_TFTTextLine: opcode, screen, line, flag, count, text. "Hi", "Up", "Go".
constexpr const char *hi_on_0_line_0 = "0000000f 00000000 00000000 00000001 00000003 486900";
constexpr const char *up_on_0_line_2 = "0000000f 00000000 00000002 00000000 00000003 557000";
constexpr const char *go_on_all_line_1 = "0000000f ffffffff 00000001 00000001 00000003 476f00";

TEST_F(TextMemoryTest, starts_without_lines) {
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen)
    EXPECT_THAT(lines(screen), IsEmpty());
  EXPECT_EQ(memory.revision(), 0U);
}

TEST_F(TextMemoryTest, a_line_that_was_not_written_above_one_that_was_is_empty) {
  follow({hi_on_0_line_0, up_on_0_line_2});
  EXPECT_THAT(lines(0), ElementsAre("Hi", "", "Up"));
  EXPECT_THAT(lines(1), IsEmpty());
}

TEST_F(TextMemoryTest, screen_minus_one_is_every_screen) {
  follow({go_on_all_line_1});
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen)
    EXPECT_THAT(lines(screen), ElementsAre("", "Go"));
}

TEST_F(TextMemoryTest, a_part_is_laid_over_the_line_and_filled_up_with_blanks) {
  // BMS_TFTSubTextLine: opcode, screen, line, offset, number of characters, colours, count, text.
  follow({"0000000f 00000001 00000000 00000001 00000007 414243444546 00",
          "00000012 00000001 00000000 00000001 00000003 00ffffff 00000000 00000002 7800",
          "00000012 00000001 00000001 00000002 00000002 00ffffff 00000000 00000006 797a777600"});
  EXPECT_THAT(lines(1), ElementsAre("Ax  EF", "  yz"));
}

TEST_F(TextMemoryTest, a_blackout_takes_the_lines_of_its_screen_away) {
  follow({go_on_all_line_1, "00000010 00000001"});
  EXPECT_THAT(lines(0), ElementsAre("", "Go"));
  EXPECT_THAT(lines(1), IsEmpty());
  follow({"00000010 ffffffff"});
  EXPECT_THAT(lines(0), IsEmpty());
  EXPECT_THAT(lines(2), IsEmpty());
}

TEST_F(TextMemoryTest, what_can_be_on_no_screen_is_not_kept) {
  follow({
      "0000000f 00000003 00000000 00000001 00000003 486900",                    // screen 3
      "0000000f fffffffe 00000000 00000001 00000003 486900",                    // screen -2
      "0000000f 00000000 00000080 00000001 00000003 486900",                    // line 128
      "0000000f 00000000 7fffffff 00000001 00000003 486900",                    //
      "0000000f 00000000 ffffffff 00000001 00000003 486900",                    // line -1
      "00000012 00000000 00000000 00000080 00000001 00 00000000 00000000 4100", // offset 128, and out of step
      "00000012 00000000 00000000 ffffffff 00000001",                           // offset -1, cut short
      "00000012 00000000 00000000 00000000 00000000",                           // no characters
      "00000012 00000000 00000000 00000000 80000000",                           // fewer than none
      "00000011 00000000",
      "0000000f",
      "00",
      "",
  });
  // A text line that is cut short after its opcode reads as an empty text on line 0 of screen 0.
  EXPECT_THAT(lines(0), ElementsAre(""));
  EXPECT_THAT(lines(1), IsEmpty());
  EXPECT_THAT(lines(2), IsEmpty());
}

TEST_F(TextMemoryTest, a_line_holds_128_characters_at_most) {
  std::string message = test::from_hex("0000000f 00000000 00000000 00000001 000007d1");
  message += std::string(2000, 'w');
  memory.follow(ByteView(message.data(), message.size()));
  EXPECT_EQ(lines(0).at(0), std::string(128, 'w'));
  follow({"00000012 00000000 00000000 0000007e 7fffffff 00ffffff 00000000 00000004 58595a00"});
  EXPECT_EQ(lines(0).at(0), std::string(126, 'w') + "XY");
}

TEST_F(TextMemoryTest, the_revision_grows_with_changes_only) {
  follow({hi_on_0_line_0});
  const std::uint64_t revision = memory.revision();
  EXPECT_GT(revision, 0U);
  follow({hi_on_0_line_0, "0000000c"});
  EXPECT_EQ(memory.revision(), revision);
  follow({up_on_0_line_2});
  EXPECT_GT(memory.revision(), revision);
}

} // namespace
} // namespace buttondriver::simulator
