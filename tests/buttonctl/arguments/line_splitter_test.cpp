// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/arguments/line_splitter.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

TEST(LineSplitterTest, words_come_out_as_from_a_shell) {
  struct Row {
    const char *line;
    QStringList words;
  };
  const Row rows[] = {
      {"", {}},
      {"   \t\r", {}},
      {"led 1 on", {"led", "1", "on"}},
      {"  led\t1  on \r", {"led", "1", "on"}},
      {"# all of it", {}},
      {"led 1 on # the rest", {"led", "1", "on"}},
      {"text 0 0 a#b", {"text", "0", "0", "a#b"}},
      {"'two words'", {"two words"}},
      {"\"two words\"", {"two words"}},
      {"''", {""}},
      {"\"\" x", {"", "x"}},
      {"a'b c'd", {"ab cd"}},
      {"'# no comment'", {"# no comment"}},
      {"'it\\n'", {"it\\n"}},
      {"\"a\\\"b\\\\c\\d\"", {"a\"b\\c\\d"}},
      {"a\\ b", {"a b"}},
      {"\\#1", {"#1"}},
      {"\"it's\"", {"it's"}},
      {"'say \"x\"'", {"say \"x\""}},
  };
  for (const Row &row : rows) {
    const Outcome<QStringList> split = split_line(QString::fromLatin1(row.line));
    ASSERT_TRUE(split) << row.line;
    EXPECT_EQ(*split, row.words) << row.line;
  }
}

TEST(LineSplitterTest, a_line_that_ends_inside_something_is_refused) {
  struct Row {
    const char *line;
    const char *text;
  };
  const Row rows[] = {
      {"text 'abc", "the quote ' is not closed"},
      {"text \"abc", "the quote \" is not closed"},
      {"text \"abc\\\"", "the quote \" is not closed"},
      {"text abc\\", "nothing follows the backslash at the end of the line"},
  };
  for (const Row &row : rows) {
    const Outcome<QStringList> split = split_line(QString::fromLatin1(row.line));
    ASSERT_FALSE(split) << row.line;
    EXPECT_EQ(split.failure().text.toStdString(), row.text);
  }
}

} // namespace
} // namespace buttondriver::buttonctl
