#include "fpga/task_queue.h"

#include <gtest/gtest.h>

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

TEST(TaskQueue, gives_tasks_in_the_order_they_came) {
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
  queue.remove_front();
  EXPECT_EQ(alive, 1);
  EXPECT_EQ(queue.front(), second_address);
  queue.remove_front();
  queue.remove_front();
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(queue.size(), 0U);
}

TEST(TaskQueue, deletes_what_is_left_and_takes_null_entries) {
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

} // namespace
} // namespace buttondriver
