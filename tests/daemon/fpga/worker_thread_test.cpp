// SPDX-License-Identifier: Apache-2.0
#include "fpga/worker_thread.h"

#include "sleeping_thread.h"
#include "threads/thread_sanitizer.h"

#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <vector>

namespace buttondriver {
namespace {

class FunctionTask : public FPGATask {
public:
  explicit FunctionTask(std::function<void()> work) : _work(std::move(work)) {}
  void execute() override { _work(); }

private:
  std::function<void()> _work;
};

class WorkerThreadTest : public testing::Test {
protected:
  void append(std::function<void()> work) {
    queue.append(std::make_unique<FunctionTask>(std::move(work)));
    semaphore.release();
  }

  void runToTheEnd() {
    worker.start();
    ASSERT_TRUE(worker.wait(10'000));
    thread_sanitizer::happens_after(&worker);
  }

  QMutex mutex;
  TaskSemaphore semaphore;
  TaskQueue queue;
  std::atomic<bool> running{true};
  WorkerThread worker{&mutex, &semaphore, &queue, &running};
};

TEST_F(WorkerThreadTest, runs_tasks_in_order_and_leaves_those_after_the_stop) {
  std::vector<int> ran;
  append([&] { ran.push_back(1); });
  queue.append(nullptr);
  semaphore.release();
  append([&] {
    ran.push_back(2);
    running = false;
  });
  append([&] { ran.push_back(3); });
  runToTheEnd();
  EXPECT_EQ(ran, (std::vector<int>{1, 2}));
  EXPECT_EQ(queue.size(), 1U);
}

TEST_F(WorkerThreadTest, holds_the_mutex_while_a_task_runs) {
  bool could_lock = true;
  append([&] { could_lock = mutex.tryLock(); });
  append([&] { running = false; });
  semaphore.release();
  runToTheEnd();
  EXPECT_FALSE(could_lock);
  EXPECT_TRUE(mutex.tryLock());
  mutex.unlock();
}

TEST_F(WorkerThreadTest, the_task_that_is_carried_out_still_counts) {
  std::vector<std::size_t> sizes;
  std::vector<TaskCosts::Time> times;
  const auto look = [&] {
    sizes.push_back(queue.size());
    times.push_back(queue.time());
  };
  append(look);
  append(look);
  append([&] {
    look();
    running = false;
  });
  semaphore.release();
  runToTheEnd();
  EXPECT_EQ(sizes, (std::vector<std::size_t>{3, 2, 1}));
  const TaskCosts::Time each = TaskCosts::unknown_transfer;
  EXPECT_EQ(times, (std::vector<TaskCosts::Time>{3 * each, 2 * each, each}));
  EXPECT_EQ(queue.size(), 0U);
}

TEST_F(WorkerThreadTest, is_woken_only_when_it_waits) {
  worker.start();
  std::promise<pid_t> begun;
  std::promise<void> end;
  append([&] {
    begun.set_value(test::this_thread());
    end.get_future().wait();
  });
  const pid_t thread = begun.get_future().get();
  const std::uint32_t before = semaphore.wakeUps();
  std::promise<void> done;
  for (int i = 0; i < 1000; ++i)
    append([] {});
  append([&] { done.set_value(); });
  end.set_value();
  done.get_future().wait();
  EXPECT_EQ(semaphore.wakeUps(), before) << "it had something to do all the time";

  test::wait_until_asleep(thread, [] { return false; });
  running = false;
  semaphore.release();
  EXPECT_EQ(semaphore.wakeUps(), before + 1);
  EXPECT_TRUE(worker.wait(10'000));
}

TEST_F(WorkerThreadTest, an_idle_worker_ends_after_one_release) {
  worker.start();
  running = false;
  semaphore.release();
  EXPECT_TRUE(worker.wait(10'000));
}

} // namespace
} // namespace buttondriver
