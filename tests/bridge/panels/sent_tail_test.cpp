// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/sent_tail.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge::test {

TEST(SentTailTest, has_what_has_not_left_as_a_whole) {
  SentTail tail;
  tail.add(10, "a");
  tail.add(20, "b");
  tail.add(35, "c");
  tail.left(9);
  tail.left(10);
  tail.left(34);
  EXPECT_EQ(tail.take(), QVector<QByteArray>{"c"});
  EXPECT_TRUE(tail.take().isEmpty());
}

} // namespace buttondriver::bridge::test
