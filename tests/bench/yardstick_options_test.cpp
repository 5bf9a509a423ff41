// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/options.h"

#include <gmock/gmock.h>

namespace buttondriver::yardsticks {
namespace {

std::vector<std::string> names_of(const std::vector<GroupKind> &groups) {
  std::vector<std::string> names;
  for (const GroupKind &kind : groups)
    names.emplace_back(kind.name);
  return names;
}

TEST(YardstickOptionsTest, without_any_all_is_measured_that_is_built_here) {
  const auto options = parse_options({});
  ASSERT_TRUE(options);
  EXPECT_THAT(names_of(options->groups), testing::ElementsAre("messages", "connections", "drawing", "processes"));
  EXPECT_NE(options->setting.daemon, "");
  EXPECT_EQ(options->csv_file, "");
  EXPECT_EQ(options->svg_beginning, "");
}

TEST(YardstickOptionsTest, with_lcdd_it_is_measured_too) {
  const auto options = parse_options({"--lcdd", "/a/folder", "--quick"});
  ASSERT_TRUE(options);
  EXPECT_THAT(names_of(options->groups), testing::Contains("lcdd"));
  EXPECT_EQ(options->setting.lcdd, "/a/folder");
}

TEST(YardstickOptionsTest, single_groups_can_be_asked_for) {
  const auto options = parse_options({"--group", "drawing", "--group", "messages", "--daemon", "/a/daemon"});
  ASSERT_TRUE(options);
  EXPECT_THAT(names_of(options->groups), testing::ElementsAre("drawing", "messages"));
  EXPECT_EQ(options->setting.daemon, "/a/daemon");
}

TEST(YardstickOptionsTest, a_quick_run_has_fewer_of_everything) {
  const Scale quick = parse_options({"--quick"})->setting.scale;
  const Scale full = parse_options({})->setting.scale;
  EXPECT_LT(quick.runs, full.runs);
  EXPECT_LT(quick.small_frames, full.small_frames);
  EXPECT_EQ(full.connections, 900);
}

class BadYardstickOptionsTest : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(BadYardstickOptionsTest, are_refused) { EXPECT_FALSE(parse_options(GetParam())); }

INSTANTIATE_TEST_SUITE_P(OfManyKinds, BadYardstickOptionsTest,
                         testing::Values(std::vector<std::string>{"--nothing", "x"}, std::vector<std::string>{"--csv"},
                                         std::vector<std::string>{"--csv", ""},
                                         std::vector<std::string>{"--group", "none"},
                                         std::vector<std::string>{"--group", "lcdd"},
                                         std::vector<std::string>{"--lcdd", ""}));

} // namespace
} // namespace buttondriver::yardsticks
