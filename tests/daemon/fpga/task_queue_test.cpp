// SPDX-License-Identifier: Apache-2.0
#include "fpga/queue/task_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace buttondriver {
namespace {

using namespace std::chrono_literals;

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

/// Remembers that it was carried out, and in which order.
class NumberedTask : public FPGATask {
public:
  NumberedTask(std::vector<int> *done, int number) : _done(done), _number(number) {}
  void execute() override { _done->push_back(_number); }

private:
  std::vector<int> *_done;
  int _number;
};

TEST(TaskQueueTest, gives_tasks_in_order_wherever_they_were_made_and_whatever_place_they_get) {
  TaskQueue queue;
  std::vector<int> done;
  std::vector<int> expected;
  int next = 0;
  // Ups and downs, so that places are used again while others wait.
  for (const int step : {3, -2, 5, -6, 1, -1, 40, -20, 30, -49, 2, -3}) {
    for (int i = 0; i < step; ++i, ++next) {
      expected.push_back(next);
      if (next % 3 == 0)
        queue.append(std::make_unique<NumberedTask>(&done, next));
      else
        queue.emplace<NumberedTask>(TaskOrigin::client, &done, next);
    }
    for (int i = step; i < 0; ++i) {
      ASSERT_NE(queue.front(), nullptr);
      queue.front()->execute();
      queue.removeFront();
    }
  }
  EXPECT_EQ(queue.size(), 0U);
  EXPECT_EQ(done, expected);
}

TEST(TaskQueueTest, destroys_what_was_made_in_it_once_when_it_is_removed_or_left) {
  int alive = 0;
  {
    TaskQueue queue;
    for (int round = 0; round < 3; ++round) {
      for (int i = 0; i < 5; ++i)
        queue.emplace<CountedTask>(TaskOrigin::client, &alive);
      for (int left = 4; left >= 0; --left) {
        queue.removeFront();
        EXPECT_EQ(alive, left);
      }
    }
    queue.emplace<CountedTask>(TaskOrigin::client, &alive);
    queue.emplace<CountedTask>(TaskOrigin::timer, &alive);
    EXPECT_EQ(alive, 2);
  }
  EXPECT_EQ(alive, 0);
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
  explicit HeavyTask(std::size_t bytes = 0) : _bytes(bytes) {}
  void execute() override {}
  TaskKind kind() const override { return TaskKind::blackout; }
  std::size_t keptBytes() const override { return _bytes; }

private:
  std::size_t _bytes;
};

/// High past 8 ms, 20 tasks or 1000 bytes, low at 4 ms, 10 tasks and 500 bytes.
const QueueMarks small_marks{8ms, 4ms, 20, 10, 1000, 500};

TEST(TaskQueueTest, reports_each_mark_once_on_the_way_up_and_once_on_the_way_down) {
  struct Row {
    const char *name;
    std::size_t bytes_each;
    TaskCosts::Time time_each;
    int appended_until_high;
    int removed_until_low;
  };
  const Row rows[] = {
      {"by time", 0, 1ms, 9, 8},
      {"by the time of many fast ones", 0, 500us, 17, 12},
      {"by the number of fast ones", 0, 10us, 21, 14},
      {"by bytes", 300, 20us, 4, 6},
      {"by one picture", 1001, 20us, 1, 4},
      {"the time is low before the bytes are", 150, 1200us, 7, 7},
      {"by the second one that takes longer than the mark", 0, 30ms, 2, 4},
      {"by the second one of unknown time", 0, 0ms, 2, 4},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.name);
    int drained = 0;
    TaskQueue queue(small_marks, [&drained] { ++drained; });
    if (row.time_each > 0ms)
      queue.costs().learn(TaskKind::blackout, row.bytes_each, row.time_each);
    const int appended = row.appended_until_high + 3;
    for (int i = 1; i <= appended; ++i)
      EXPECT_EQ(queue.append(std::make_unique<HeavyTask>(row.bytes_each)), i == row.appended_until_high) << i;
    for (int removed = 1; removed <= row.removed_until_low; ++removed) {
      EXPECT_EQ(drained, 0) << removed;
      EXPECT_TRUE(queue.isHigh()) << removed;
      queue.removeFront();
    }
    EXPECT_EQ(drained, 1);
    EXPECT_FALSE(queue.isHigh());
    while (queue.size() > 0)
      queue.removeFront();
    EXPECT_EQ(drained, 1);
  }
}

TEST(TaskQueueTest, a_task_counts_for_what_was_expected_when_it_came) {
  TaskQueue queue(small_marks);
  queue.costs().learn(TaskKind::blackout, 0, 1ms);
  for (int i = 0; i < 3; ++i)
    queue.append(std::make_unique<HeavyTask>());
  queue.costs().learn(TaskKind::blackout, 0, 9ms); // from now on each counts for 3 ms
  EXPECT_FALSE(queue.append(std::make_unique<HeavyTask>()));
  EXPECT_TRUE(queue.append(std::make_unique<HeavyTask>()));
  while (queue.size() > 0)
    queue.removeFront();
  EXPECT_FALSE(queue.append(std::make_unique<HeavyTask>()));
  EXPECT_FALSE(queue.append(std::make_unique<HeavyTask>()));
  EXPECT_TRUE(queue.append(std::make_unique<HeavyTask>())) << "nothing of the earlier ones is left";
}

TEST(TaskQueueTest, comes_down_quietly_where_nobody_wants_to_know) {
  TaskQueue queue(small_marks);
  for (int i = 0; i < 2; ++i)
    queue.append(std::make_unique<HeavyTask>());
  EXPECT_TRUE(queue.isHigh());
  queue.removeFront();
  EXPECT_FALSE(queue.isHigh());
}

TEST(TaskQueueTest, what_the_timer_appends_makes_nobody_pause) {
  int drained = 0;
  TaskQueue queue(small_marks, [&drained] { ++drained; });
  queue.costs().learn(TaskKind::blackout, 0, 1ms);
  const auto append = [&queue](int count, TaskOrigin origin) {
    bool is_high_now = false;
    for (int i = 0; i < count; ++i)
      is_high_now = queue.append(std::make_unique<HeavyTask>(), origin) || is_high_now;
    return is_high_now;
  };
  EXPECT_FALSE(append(40, TaskOrigin::timer));
  EXPECT_FALSE(append(8, TaskOrigin::client));
  EXPECT_TRUE(append(1, TaskOrigin::client));
  append(40, TaskOrigin::timer);
  for (int i = 0; i < 44; ++i)
    queue.removeFront();
  EXPECT_TRUE(queue.isHigh());
  queue.removeFront();
  EXPECT_EQ(drained, 1) << "four of the clients' and forty of the timer's are left";
}

TEST(TaskQueueTest, is_full_while_a_task_of_the_timer_has_waited_for_long) {
  std::chrono::steady_clock::time_point now{};
  TaskQueue queue({}, {}, [&now] { return now; });
  const auto append = [&queue](TaskOrigin origin) { queue.append(std::make_unique<HeavyTask>(), origin); };
  append(TaskOrigin::client);
  now += 1h;
  EXPECT_FALSE(queue.isFull()) << "clients' tasks may wait";
  append(TaskOrigin::timer);
  now += 100ms;
  append(TaskOrigin::timer);
  now += 150ms;
  EXPECT_FALSE(queue.isFull()) << "250 ms";
  now += 1ms;
  EXPECT_TRUE(queue.isFull());
  queue.removeFront();
  EXPECT_TRUE(queue.isFull());
  queue.removeFront();
  EXPECT_FALSE(queue.isFull()) << "the next one waits for 151 ms";
  now += 100ms;
  EXPECT_TRUE(queue.isFull());
  queue.removeFront();
  now += 1h;
  EXPECT_FALSE(queue.isFull());
}

TEST(TaskQueueTest, is_full_of_many_fast_tasks_too) {
  QueueMarks marks;
  marks.full_tasks = 10;
  TaskQueue queue(marks);
  queue.costs().learn(TaskKind::blackout, 0, 1us);
  for (int i = 1; i <= 11; ++i) {
    EXPECT_FALSE(queue.isFull()) << i;
    queue.append(std::make_unique<HeavyTask>(), TaskOrigin::timer);
  }
  EXPECT_TRUE(queue.isFull());
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
