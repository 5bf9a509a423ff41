// SPDX-License-Identifier: Apache-2.0
#include "counts/options.h"

#include <gtest/gtest.h>

namespace buttondriver::counts {
namespace {

TEST(CountsOptionsTest, without_any_count_all_rows_of_the_built_daemon) {
  const auto options = parse_options({});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->rows.size(), all_message_kinds().size());
  EXPECT_EQ(options->daemon, "");
  EXPECT_EQ(options->csv_file, "");
  EXPECT_EQ(options->expected_file, "");
}

TEST(CountsOptionsTest, name_rows_a_daemon_and_a_file) {
  const auto options = parse_options({"--row", "ping", "--daemon", "/d", "--row", "blackout", "--csv", "/c"});
  ASSERT_TRUE(options);
  ASSERT_EQ(options->rows.size(), 2U);
  EXPECT_STREQ(options->rows[0].name, "ping");
  EXPECT_STREQ(options->rows[1].name, "blackout");
  EXPECT_EQ(options->daemon, "/d");
  EXPECT_EQ(options->csv_file, "/c");
}

TEST(CountsOptionsTest, name_the_table_that_holds) { EXPECT_EQ(parse_options({"--hold", "/t"})->expected_file, "/t"); }

TEST(CountsOptionsTest, that_make_no_sense_are_refused) {
  const std::vector<std::vector<std::string>> rows = {
      {"--row"},
      {"--row", "nothing"},
      {"--csv", ""},
      {"--daemon"},
      {"ping"},
      {"--fast", "1"},
      {"--hold", "/t", "--row", "ping"},
      {"--daemon", "/d", "--hold", "/t"},
  };
  for (const auto &arguments : rows)
    EXPECT_FALSE(parse_options(arguments)) << arguments.back();
}

TEST(MessageKindsTest, fit_into_one_turn_and_into_what_is_read_ahead) {
  constexpr int messages_per_turn = 64;
  constexpr qint64 read_ahead = 65536;
  for (const MessageKind &kind : all_message_kinds()) {
    EXPECT_LE(kind.at_once, messages_per_turn) << kind.name;
    EXPECT_LT(kind.at_once * (kind.message(0).size() + 4), read_ahead) << kind.name;
  }
}

} // namespace
} // namespace buttondriver::counts
