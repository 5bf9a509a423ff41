// SPDX-License-Identifier: Apache-2.0
#include "threads/task_semaphore.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace buttondriver {
namespace {

TEST(TaskSemaphoreTest, counts_and_wakes_nobody_while_nobody_waits) {
  TaskSemaphore semaphore;
  EXPECT_FALSE(semaphore.tryAcquire());
  for (int i = 0; i < 3; ++i)
    semaphore.release();
  EXPECT_TRUE(semaphore.tryAcquire());
  semaphore.acquire();
  EXPECT_TRUE(semaphore.tryAcquire());
  EXPECT_FALSE(semaphore.tryAcquire());
  EXPECT_EQ(semaphore.wakeUps(), 0U);
}

TEST(TaskSemaphoreTest, waits_for_each_release_and_loses_none) {
  TaskSemaphore there;
  TaskSemaphore back;
  constexpr int rounds = 1000;
  int answers = 0;
  std::thread answering([&] {
    for (int i = 0; i < rounds; ++i) {
      there.acquire();
      ++answers;
      back.release();
    }
  });
  int too_early = 0;
  for (int i = 1; i <= rounds; ++i) {
    there.release();
    back.acquire();
    too_early += answers == i ? 0 : 1;
  }
  answering.join();
  EXPECT_EQ(too_early, 0);
  EXPECT_FALSE(there.tryAcquire());
  EXPECT_FALSE(back.tryAcquire());
}

TEST(TaskSemaphoreTest, orders_what_was_done_before_a_release_and_what_is_done_after_it) {
  TaskSemaphore semaphore;
  constexpr int count = 100000;
  std::vector<int> values(count);
  std::thread writer([&] {
    for (int i = 0; i < count; ++i) {
      values[static_cast<std::size_t>(i)] = i;
      semaphore.release();
    }
  });
  bool is_each_seen = true;
  for (int i = 0; i < count; ++i) {
    if (i % 2 == 0 || !semaphore.tryAcquire())
      semaphore.acquire();
    is_each_seen = is_each_seen && values[static_cast<std::size_t>(i)] == i;
  }
  writer.join();
  EXPECT_TRUE(is_each_seen);
  EXPECT_FALSE(semaphore.tryAcquire());
}

} // namespace
} // namespace buttondriver
