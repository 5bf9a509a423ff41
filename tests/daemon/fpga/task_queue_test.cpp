// SPDX-License-Identifier: Apache-2.0
#include "fpga/task_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace buttondriver {
namespace {

class CountedTask : public FPGATask {
public:
  explicit CountedTask(int *alive) : _alive(alive) { ++*_alive; }
  ~CountedTask() override { --*_alive; }
  void execute() override {}

private:
  int *_alive;
};

TEST(TaskQueueTest, gives_tasks_in_the_order_they_came) {
  int alive = 0;
  TaskQueue queue;
  EXPECT_EQ(queue.front(), nullptr);
  auto first = std::make_unique<CountedTask>(&alive);
  auto second = std::make_unique<CountedTask>(&alive);
  FPGATask *const first_address = first.get();
  FPGATask *const second_address = second.get();
  queue.append(std::move(first));
  queue.append(std::move(second));
  EXPECT_EQ(queue.size(), 2U);
  EXPECT_EQ(queue.front(), first_address);
  queue.removeFront();
  EXPECT_EQ(alive, 1);
  EXPECT_EQ(queue.front(), second_address);
  queue.removeFront();
  queue.removeFront();
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(queue.size(), 0U);
}

TEST(TaskQueueTest, deletes_what_is_left_and_takes_null_entries) {
  int alive = 0;
  {
    TaskQueue queue;
    queue.append(nullptr);
    queue.append(std::make_unique<CountedTask>(&alive));
    EXPECT_EQ(queue.front(), nullptr);
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
}

class HeavyTask : public FPGATask {
public:
  explicit HeavyTask(std::size_t bytes) : _bytes(bytes) {}
  void execute() override {}
  std::size_t keptBytes() const override { return _bytes; }

private:
  std::size_t _bytes;
};

TEST(TaskQueueTest, reports_each_mark_once_on_the_way_up_and_once_on_the_way_down) {
  struct Row {
    const char *name;
    std::size_t bytes_each;
    int appended_until_high;
    int removed_until_low;
  };
  // Marks: 8 tasks high, 4 low; 100 bytes high, 50 low.
  const Row rows[] = {
      {"by number", 0, 9, 5},
      {"by bytes", 30, 4, 3},
      {"by one picture", 101, 1, 1},
      {"the number is low before the bytes are", 16, 7, 4},
  };
  for (const Row &row : rows) {
    int drained = 0;
    TaskQueue queue({8, 4, 100, 50}, [&drained] { ++drained; });
    for (int i = 1; i <= row.appended_until_high + 3; ++i)
      EXPECT_EQ(queue.append(std::make_unique<HeavyTask>(row.bytes_each)), i == row.appended_until_high)
          << row.name << i;
    for (int i = 0; i < 3; ++i)
      queue.removeFront();
    EXPECT_EQ(drained, 0) << row.name;
    EXPECT_TRUE(queue.isHigh()) << row.name;
    for (int i = 1; i <= row.removed_until_low; ++i) {
      EXPECT_EQ(drained, 0) << row.name << i;
      queue.removeFront();
    }
    EXPECT_EQ(drained, 1) << row.name;
    EXPECT_FALSE(queue.isHigh()) << row.name;
    while (queue.size() > 0)
      queue.removeFront();
    EXPECT_EQ(drained, 1) << row.name;
  }
}

TEST(TaskQueueTest, comes_down_quietly_where_nobody_wants_to_know) {
  TaskQueue queue({2, 1, 100, 50});
  for (int i = 0; i < 3; ++i)
    queue.append(std::make_unique<HeavyTask>(0));
  EXPECT_TRUE(queue.isHigh());
  queue.removeFront();
  queue.removeFront();
  EXPECT_FALSE(queue.isHigh());
}

TEST(TaskQueueTest, what_the_timer_appends_makes_it_full_and_not_high) {
  QueueMarks marks;
  marks.high_tasks = 4;
  marks.low_tasks = 2;
  marks.full_tasks = 12;
  int drained = 0;
  TaskQueue queue(marks, [&drained] { ++drained; });
  const auto append = [&queue](int count, TaskOrigin origin) {
    bool is_high_now = false;
    for (int i = 0; i < count; ++i)
      is_high_now = queue.append(std::make_unique<HeavyTask>(0), origin) || is_high_now;
    return is_high_now;
  };
  EXPECT_FALSE(append(8, TaskOrigin::timer));
  EXPECT_FALSE(append(4, TaskOrigin::client));
  EXPECT_FALSE(queue.isFull());
  EXPECT_TRUE(append(1, TaskOrigin::client));
  EXPECT_TRUE(queue.isFull());
  append(20, TaskOrigin::timer);
  for (int i = 0; i < 10; ++i)
    queue.removeFront();
  EXPECT_TRUE(queue.isHigh());
  EXPECT_TRUE(queue.isFull());
  queue.removeFront();
  EXPECT_EQ(drained, 1) << "two of the clients' and twenty of the timer's are left";
  EXPECT_TRUE(queue.isFull());
  for (int i = 0; i < 10; ++i)
    queue.removeFront();
  EXPECT_FALSE(queue.isFull());
}

TEST(TaskQueueTest, hands_out_nothing_while_it_is_held) {
  TaskQueue queue;
  queue.append(std::make_unique<HeavyTask>(0));
  std::atomic<bool> is_handed_out{false};
  auto hold = queue.hold();
  std::thread remover([&] { is_handed_out = queue.front() != nullptr; });
  // Appending does not wait, and neither does who looks.
  queue.append(std::make_unique<HeavyTask>(0));
  EXPECT_EQ(queue.size(), 2U);
  EXPECT_FALSE(is_handed_out);
  hold.unlock();
  remover.join();
  EXPECT_TRUE(is_handed_out);
}

} // namespace
} // namespace buttondriver
