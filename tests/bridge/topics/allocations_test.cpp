// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/topic_commands.h"
#include "counted_memory.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge {
namespace {

TEST(AllocationsTest, of_lamps_and_lines_are_the_frame_alone) {
  if (!test::counts_memory())
    GTEST_SKIP() << "a sanitizer has its own allocator";
  struct Row {
    QByteArray tail;
    QByteArray payload;
  };
  const Row rows[] = {{"led/5", "on"},
                      {"led/all", "blink 500"},
                      {"status/31", "off"},
                      {"toggle/0", "on"},
                      {"screen/0/line/2", "Ready"},
                      {"screen/all/line/7/inverse", "12 \xC2\xB0"},
                      {"screen/1/blackout", "now"},
                      {"reconfig", "now"}};
  for (const Row &row : rows) {
    const std::size_t before = test::taken_blocks();
    const Outcome<Command> command = command_of(row.tail, row.payload);
    const std::size_t taken = test::taken_blocks() - before;
    ASSERT_TRUE(command) << row.tail.toStdString();
    EXPECT_EQ(taken, 1U) << row.tail.toStdString();
  }
}

} // namespace
} // namespace buttondriver::bridge
