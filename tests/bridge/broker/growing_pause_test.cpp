// SPDX-License-Identifier: Apache-2.0
#include "bridge/broker/growing_pause.h"
#include "bridge/broker/waiting_messages.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge {
namespace {

TEST(GrowingPauseTest, doubles_up_to_its_bound_and_begins_again) {
  GrowingPause pause(500, 30'000);
  for (int round = 0; round < 2; ++round) {
    for (const int most : {500, 1000, 2000, 4000, 8000, 16'000, 30'000, 30'000, 30'000}) {
      const int next = pause.next();
      EXPECT_LE(next, most);
      EXPECT_GE(next, most / 2);
    }
    pause.reset();
  }
}

TEST(GrowingPauseTest, differs_from_time_to_time) {
  GrowingPause pause(1'000'000, 1'000'000);
  const int first = pause.next();
  int same = 0;
  for (int i = 0; i < 10; ++i)
    same += pause.next() == first;
  EXPECT_LT(same, 10);
}

TEST(WaitingMessagesTest, are_bounded_in_number_and_in_bytes) {
  WaitingMessages waiting;
  EXPECT_FALSE(waiting.hasRoomFor(1024 * 1024 + 1, 0));
  EXPECT_TRUE(waiting.hasRoomFor(1024 * 1024, 0));
  EXPECT_TRUE(waiting.hasRoomFor(32 * 1024 * 1024, 1));
  EXPECT_FALSE(waiting.hasRoomFor(32 * 1024 * 1024 + 1, 1));
  for (int number = 1; number <= 50'000; ++number) {
    EXPECT_EQ(waiting.hasRoomFor(10, 0), number <= 1000);
    EXPECT_TRUE(waiting.hasRoomFor(10, 1));
    waiting.add(number, 10);
  }
  EXPECT_FALSE(waiting.hasRoomFor(10, 1));
  EXPECT_EQ(waiting.bytes(), 500'000);
  EXPECT_TRUE(waiting.remove(7));
  EXPECT_FALSE(waiting.remove(7));
  EXPECT_EQ(waiting.count(), 49'999);
  EXPECT_EQ(waiting.bytes(), 499'990);
}

} // namespace
} // namespace buttondriver::bridge
