// SPDX-License-Identifier: Apache-2.0
#include "latency/options.h"

#include <gmock/gmock.h>

namespace buttondriver::latency {
namespace {

TEST(OptionsTest, without_any_the_built_daemon_is_measured_under_every_load) {
  const auto options = parse_options({});
  ASSERT_TRUE(options);
  ASSERT_EQ(options->daemons.size(), 1);
  EXPECT_EQ(options->daemons[0].name, "");
  EXPECT_EQ(options->loads.size(), all_load_kinds().size());
  EXPECT_THAT(options->transfer_seconds, testing::ElementsAre(0.002, 0));
  EXPECT_EQ(options->tempo.seconds, 10);
  EXPECT_FALSE(options->is_busy);
}

TEST(OptionsTest, several_daemons_have_names_of_their_own) {
  const auto options = parse_options({"--daemon", "before=/a/daemon", "--daemon", "/b/daemon"});
  ASSERT_TRUE(options);
  ASSERT_EQ(options->daemons.size(), 2);
  EXPECT_EQ(options->daemons[0].name, "before");
  EXPECT_EQ(options->daemons[0].program, "/a/daemon");
  EXPECT_EQ(options->daemons[1].name, "daemon");
  EXPECT_EQ(options->daemons[1].program, "/b/daemon");
}

TEST(OptionsTest, what_is_given_replaces_what_a_quick_run_would_have) {
  const auto options = parse_options({"--seconds", "2.5", "--limit", "7", "--quick", "--busy", "--load", "text"});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->tempo.seconds, 2.5);
  EXPECT_EQ(options->tempo.limit_seconds, 7);
  EXPECT_TRUE(options->is_busy);
  ASSERT_EQ(options->loads.size(), 1);
  EXPECT_STREQ(options->loads[0].name, "text");
}

class BadOptionsTest : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(BadOptionsTest, are_refused) { EXPECT_FALSE(parse_options(GetParam())); }

INSTANTIATE_TEST_SUITE_P(OfManyKinds, BadOptionsTest,
                         testing::Values(std::vector<std::string>{"--nothing", "x"}, std::vector<std::string>{"--svg"},
                                         std::vector<std::string>{"--svg", ""},
                                         std::vector<std::string>{"--load", "none"},
                                         std::vector<std::string>{"--seconds", "0"},
                                         std::vector<std::string>{"--seconds", "3x"},
                                         std::vector<std::string>{"--limit", ""},
                                         std::vector<std::string>{"--daemon", "/a/daemon", "--daemon", "/b/daemon"}));

} // namespace
} // namespace buttondriver::latency
