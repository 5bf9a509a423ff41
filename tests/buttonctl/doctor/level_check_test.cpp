// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/level_check.h"

#include "buttonctl/doctor/shown.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

using Kind = FileFacts::Kind;
using test::all_but;
using test::shown_in;

TEST(LevelCheckTest, judges_each_line) {
  struct Row {
    const char *content;
    const char *fault; ///< null: all is well
  };
  const Row rows[] = {
      {"led 100\nlcd 0\nscr 70\n", nullptr},
      {"", nullptr},
      {"scr 50", nullptr},
      {"\n  scr   50  \n\n", nullptr},
      {"led 100\nbel 5\n", "2: 'bel' is none of 'led', 'lcd' and 'scr'"},
      {"scr\n", "1: the level of 'scr' must be 0 to 100"},
      {"scr 101\n", "1: the level of 'scr' must be 0 to 100"},
      {"led 1\n\nlcd -1\n", "3: the level of 'lcd' must be 0 to 100"},
      {"scr high\n", "1: the level of 'scr' must be 0 to 100"},
      {"a\x1b[2J 5\n", "1: 'a\\x1b[2J' is none of 'led', 'lcd' and 'scr'"},
  };
  for (const Row &row : rows) {
    const test::TestRoot root;
    root.writeLevels(row.content);
    const std::string expected = row.fault ? "FAULT  levels: ROOT/etc/rv1000e/buttonlevel:" + std::string(row.fault) +
                                                 "\n       fix: ${EDITOR:-vi} +" + row.fault[0] +
                                                 " ROOT/etc/rv1000e/buttonlevel    # a line such as: scr 100\n"
                                           : "ok     levels: ROOT/etc/rv1000e/buttonlevel\n";
    EXPECT_EQ(shown_in(root, {check_levels(root.paths(), look_at_file)}), expected) << row.content;
  }
}

TEST(LevelCheckTest, a_file_that_is_missing_is_no_fault_and_one_that_cannot_be_read_is) {
  const std::string file = "ROOT/etc/rv1000e/buttonlevel";
  const std::pair<FileFacts, std::string> rows[] = {
      {{Kind::missing, false, false, {}},
       "ok     levels: " + file + " is not there, and need not be: the levels stay as they are\n"},
      {{Kind::folder, true, true, {}},
       "FAULT  levels: " + file + " is no file\n       fix: mv -n " + file + " " + file + ".old\n"},
      {{Kind::other, true, true, {}},
       "FAULT  levels: " + file + " is no file\n       fix: mv -n " + file + " " + file + ".old\n"},
      {{Kind::regular, false, true, {}},
       "FAULT  levels: no permission to read " + file + "\n       fix: chmod a+r " + file + "\n"},
  };
  for (const auto &[facts, says] : rows) {
    const test::TestRoot root;
    root.writeLevels("scr 50\n");
    const FileLook look = all_but(root.path() + QStringLiteral("/etc/rv1000e/buttonlevel"), facts);
    EXPECT_EQ(shown_in(root, {check_levels(root.paths(), look)}), says);
  }
}

} // namespace
} // namespace buttondriver::buttonctl
