// SPDX-License-Identifier: Apache-2.0
#include "fpga/worker_thread.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>

namespace {

int unguarded = 0;
std::atomic<bool> has_run{false};

/// Writes, on the worker thread, what the main thread writes too. The relaxed flag orders nothing.
class RacingTask : public buttondriver::FPGATask {
public:
  void execute() override {
    ++unguarded;
    has_run.store(true, std::memory_order_relaxed);
  }
};

} // namespace

int main(int argc, char **argv) {
  QCoreApplication application(argc, argv);
  QMutex mutex;
  buttondriver::TaskSemaphore semaphore;
  buttondriver::TaskQueue queue;
  std::atomic<bool> running{true};
  buttondriver::WorkerThread worker(&mutex, &semaphore, &queue, &running);
  worker.start();
  queue.append(std::make_unique<RacingTask>());
  semaphore.release();
  ++unguarded;
  while (!has_run.load(std::memory_order_relaxed)) {
  }
  running = false;
  semaphore.release();
  worker.wait();
  std::printf("%d\n", unguarded);
  return 0;
}
