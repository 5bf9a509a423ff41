// SPDX-License-Identifier: Apache-2.0
#include "tools/manual/roff.h"

#include <gtest/gtest.h>

namespace buttondriver::manual {
namespace {

struct Row {
  std::string from;
  std::string to;
};

TEST(RoffTest, shows_what_can_be_typed_as_it_is) {
  const Row rows[] = {
      {"--dry-run", "\\-\\-dry\\-run"},
      {"'a' `b` ^ ~", "\\(aqa\\(aq \\(gab\\(ga \\(ha \\(ti"},
      {"\\x1B", "\\(rsx1B"},
      {"-12\xC2\xB0", "\\-12\\[u00B0]"},
      {"\xE2\x82\xAC and \xF0\x9F\x98\x80", "\\[u20AC] and \\[u1F600]"},
  };
  for (const Row &row : rows)
    EXPECT_EQ(literal(row.from), row.to);
  EXPECT_EQ(bold("-n"), "\\fB\\-n\\fR");
  EXPECT_EQ(italic("FILE"), "\\fIFILE\\fR");
}

TEST(RoffTest, takes_no_text_for_a_request) {
  EXPECT_EQ(text_line(".profile"), "\\&.profile");
  EXPECT_EQ(text_line("'quoted'"), "\\&'quoted'");
  EXPECT_EQ(text_line("a.b"), "a.b");
  EXPECT_EQ(text_line(""), "");
}

TEST(RoffTest, makes_text_of_simple_markdown) {
  const Row rows[] = {
      {"a two-way client's", "a two-way client's"},           {"-1 or 'x' - y", "\\-1 or \\(aqx\\(aq \\- y"},
      {"the `--json` of it", "the \\fB\\-\\-json\\fR of it"}, {"a [pause](page.md#pause), then", "a pause, then"},
      {"the [`count`](x.md)", "the \\fBcount\\fR"},           {"one ` and one [", "one \\(ga and one ["},
  };
  for (const Row &row : rows)
    EXPECT_EQ(inline_text(row.from), row.to);
}

TEST(RoffTest, begins_a_line_with_each_sentence_and_keeps_names_whole) {
  EXPECT_EQ(prose("One two. Three, 4. 5 is\nsix. `seven` BMS_Ping"),
            "One two.\nThree, 4. 5 is six.\n\\%\\fBseven\\fR \\%BMS_Ping\n");
  EXPECT_EQ(prose("Is it? .It"), "Is it? .It\n");
  EXPECT_EQ(prose(""), "");
}

TEST(RoffTest, breaks_long_lines_and_none_begins_a_request) {
  const std::string long_words = std::string(60, 'a') + ' ' + std::string(60, 'b');
  EXPECT_EQ(filled(long_words), std::string(60, 'a') + '\n' + std::string(60, 'b') + '\n');
  EXPECT_EQ(filled(std::string(109, 'a') + " .ad"), std::string(109, 'a') + "\n\\&.ad\n");
}

TEST(RoffTest, sets_examples_off) {
  EXPECT_EQ(example("one\n.two\n\n"), ".PP\n.RS 4\n.EX\none\n\\&.two\n\n.EE\n.RE\n");
  EXPECT_EQ(tagged(bold("a"), "text\n"), ".TP\n\\fBa\\fR\ntext\n");
}

} // namespace
} // namespace buttondriver::manual
