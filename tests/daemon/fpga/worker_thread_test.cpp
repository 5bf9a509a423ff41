// SPDX-License-Identifier: Apache-2.0
#include "fpga/worker_thread.h"

#include <gtest/gtest.h>

#include <functional>
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

TEST_F(WorkerThreadTest, an_idle_worker_ends_after_one_release) {
  worker.start();
  running = false;
  semaphore.release();
  EXPECT_TRUE(worker.wait(10'000));
}

} // namespace
} // namespace buttondriver
