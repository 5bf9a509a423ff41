// SPDX-License-Identifier: Apache-2.0
#include "tools/manual/marked_part.h"

#include <gtest/gtest.h>

namespace buttondriver::manual {
namespace {

constexpr const char *page = ".SH LIMITS\n"
                             ".\\\" begin limits: by hand\n"
                             "old\n"
                             "lines\n"
                             ".\\\" end limits\n"
                             ".SH END\n";

TEST(MarkedPartTest, is_put_between_its_marks_and_nothing_else_changes) {
  const auto updated = with_part(page, "limits", "new\n");
  EXPECT_EQ(updated, ".SH LIMITS\n.\\\" begin limits: by hand\nnew\n.\\\" end limits\n.SH END\n");
  EXPECT_EQ(with_part(*updated, "limits", "old\nlines\n"), page);
  EXPECT_EQ(with_part(page, "limits", ""), ".SH LIMITS\n.\\\" begin limits: by hand\n.\\\" end limits\n.SH END\n");
}

TEST(MarkedPartTest, is_refused_without_one_of_its_marks) {
  const struct {
    const char *what;
    const char *text;
  } rows[] = {
      {"neither", ".SH LIMITS\n"},
      {"no end", ".SH LIMITS\n.\\\" begin limits: by hand\nold\n"},
      {"no beginning", ".SH LIMITS\nold\n.\\\" end limits\n"},
      {"the end first", ".SH LIMITS\n.\\\" end limits\n.\\\" begin limits: by hand\n"},
      {"another part's end", ".SH LIMITS\n.\\\" begin limits: by hand\n.\\\" end limits of others\n"},
      {"another part's", ".SH LIMITS\n.\\\" begin limits of others: by hand\n.\\\" end limits of others\n"},
  };
  for (const auto &row : rows)
    EXPECT_EQ(with_part(row.text, "limits", "new\n"), std::nullopt) << row.what;
}

} // namespace
} // namespace buttondriver::manual
