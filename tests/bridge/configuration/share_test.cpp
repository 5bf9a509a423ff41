// SPDX-License-Identifier: Apache-2.0
#include "bridge/configuration/configuration.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace buttondriver::bridge {
namespace {

/// The hash of a name modulo 2, 3 and 1000, as this counts it:
///
///     python3 -c 'import sys, functools
///     for name in sys.argv[1:]:
///         hash = functools.reduce(lambda h, b: (h ^ b) * 0x100000001b3 % 2**64, name.encode(), 0xcbf29ce484222325)
///         print(name, hash % 2, hash % 3, hash % 1000)' a hall kitchen-2 Panel_17.west foobar
struct Row {
  const char *panel;
  int of_2;
  int of_3;
  int of_1000;
};

std::ostream &operator<<(std::ostream &stream, const Row &row) { return stream << row.panel; }

class ShareTest : public testing::TestWithParam<Row> {};

INSTANTIATE_TEST_SUITE_P(Each, ShareTest,
                         testing::Values(Row{"a", 0, 1, 996}, Row{"hall", 0, 2, 730}, Row{"kitchen-2", 0, 0, 804},
                                         Row{"Panel_17.west", 1, 0, 479}, Row{"foobar", 0, 0, 968}));

int share_of(const char *panel, int shares) {
  Configuration configuration;
  configuration.shares = shares;
  int share = 0;
  for (configuration.share = 1; configuration.share <= shares; ++configuration.share)
    if (configuration.drives(panel)) {
      EXPECT_EQ(share, 0) << "two bridges drive it";
      share = configuration.share;
    }
  return share;
}

TEST_P(ShareTest, one_bridge_drives_a_panel) {
  const Row &row = GetParam();
  EXPECT_EQ(share_of(row.panel, 1), 1);
  EXPECT_EQ(share_of(row.panel, 2), row.of_2 + 1);
  EXPECT_EQ(share_of(row.panel, 3), row.of_3 + 1);
  EXPECT_EQ(share_of(row.panel, 1000), row.of_1000 + 1);
}

} // namespace
} // namespace buttondriver::bridge
