// SPDX-License-Identifier: Apache-2.0
#include "tools/manual/folding.h"

#include <gtest/gtest.h>

namespace buttondriver::manual {
namespace {

TEST(FoldingTest, continues_below_the_last_column) {
  EXPECT_EQ(folded("  name  some words here", 16), "  name  some\n        words\n        here");
  EXPECT_EQ(folded("  name  some words", 18), "  name  some words");
  EXPECT_EQ(folded("no columns here", 12), "no columns\n    here");
  EXPECT_EQ(folded("a_word_that_is_too_long", 10), "a_word_that_is_too_long");
  EXPECT_EQ(folded(R"({"a":1,"b":2,"c":3})", 10), "{\"a\":1,\n \"b\":2,\n \"c\":3}");
}

TEST(FoldingTest, of_commands_is_outside_of_quotes) {
  const std::string first = "buttonctl message BMS_TFTTextLine screen_id=1 line_id=0 flag=1";
  EXPECT_EQ(folded_commands(first + " text='Channel 7'\nbuttonctl ping\n"),
            first + " \\\n    text='Channel 7'\nbuttonctl ping\n");
  const std::string quoted = "'aaaa bbbb cccc dddd eeee ffff gggg hhhh iiii jjjj kkkk'";
  EXPECT_EQ(folded_commands("buttonctl text 0 0 " + quoted + "\n"), "buttonctl text 0 0 \\\n    " + quoted + "\n");
  EXPECT_EQ(folded_commands(first + "\n"), first + "\n");
  EXPECT_EQ(folded_commands(first + " a=1234\n"), first + " a=1234\n") << "69 characters have room";
  EXPECT_EQ(folded_commands(first + " a=1 bcd\n"), first + " a=1 \\\n    bcd\n");
}

} // namespace
} // namespace buttondriver::manual
