// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/drawing_order.h"

#include "bridge/wanted/targets.h"

#include <gtest/gtest.h>

namespace buttondriver::bridge::test {

namespace {

WantedEntry entry_of(const Target &target) { return {"topic", "payload", target, true, 0}; }

} // namespace

TEST(DrawingOrderTest, tells_the_first_and_the_last_that_lies_over_an_entry) {
  DrawingOrder order;
  WantedEntry picture = entry_of(screen(0)), one = entry_of(line(0, 1)), other = entry_of(line(0, 2));
  EXPECT_FALSE(order.append(picture));
  EXPECT_TRUE(order.append(one));
  EXPECT_FALSE(order.append(other));
  EXPECT_EQ(picture.overlapped_by, 2);
  EXPECT_FALSE(order.takeOut(one));
  EXPECT_TRUE(order.takeOut(other));
  EXPECT_EQ(picture.overlapped_by, 0);
  EXPECT_FALSE(order.takeOut(picture));
}

TEST(DrawingOrderTest, tells_that_one_goes_over_which_others_lie) {
  DrawingOrder order;
  WantedEntry picture = entry_of(screen(0)), over = entry_of(line(0, 1));
  order.append(picture);
  order.append(over);
  EXPECT_TRUE(order.takeOut(picture));
  EXPECT_TRUE(order.append(picture)) << "it lies over the line now";
  EXPECT_EQ(picture.overlapped_by, 0);
}

TEST(DrawingOrderTest, knows_nothing_of_what_was_there_before_it_was_cleared) {
  DrawingOrder order;
  WantedEntry before = entry_of(screen(all)), after = entry_of(screen(all));
  order.append(before);
  order.clear();
  EXPECT_FALSE(order.append(after));
  EXPECT_EQ(before.overlapped_by, 0);
}

} // namespace buttondriver::bridge::test
