// SPDX-License-Identifier: Apache-2.0
#include "fleet/options.h"

#include <gtest/gtest.h>

namespace buttondriver::fleet {
namespace {

TEST(FleetOptionsTest, without_any_are_those_of_the_page) {
  const auto options = parse_options({});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->setting.panels, 1000U);
  EXPECT_EQ(options->setting.commands_per_second, 10'000);
  EXPECT_NE(options->setting.bridge, "");
  EXPECT_EQ(options->csv_file, "");
}

TEST(FleetOptionsTest, can_all_be_said) {
  const auto options = parse_options({"--panels", "7", "--quick", "--rate", "500", "--seconds", "2", "--rounds", "3",
                                      "--bridge", "/a/bridge", "--csv", "file.csv"});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->setting.panels, 7U);
  EXPECT_EQ(options->setting.commands(), 1000U);
  EXPECT_EQ(options->setting.rounds, 3);
  EXPECT_EQ(options->setting.bridge, "/a/bridge");
  EXPECT_EQ(options->csv_file, "file.csv");
}

TEST(FleetOptionsTest, a_quick_run_has_fewer_of_everything) {
  const Setting quick = parse_options({"--quick"})->setting;
  const Setting full = parse_options({})->setting;
  EXPECT_LT(quick.panels, full.panels);
  EXPECT_LT(quick.commands(), full.commands());
  EXPECT_LT(quick.rounds, full.rounds);
}

class BadFleetOptionsTest : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(BadFleetOptionsTest, are_refused) { EXPECT_FALSE(parse_options(GetParam())); }

INSTANTIATE_TEST_SUITE_P(
    OfManyKinds, BadFleetOptionsTest,
    testing::Values(std::vector<std::string>{"--nothing", "x"}, std::vector<std::string>{"--panels"},
                    std::vector<std::string>{"--panels", "1"}, std::vector<std::string>{"--panels", "5001"},
                    std::vector<std::string>{"--panels", "7x"}, std::vector<std::string>{"--rate", "0"},
                    std::vector<std::string>{"--seconds", "-1"}, std::vector<std::string>{"--rounds", "0"},
                    std::vector<std::string>{"--csv", ""}));

} // namespace
} // namespace buttondriver::fleet
