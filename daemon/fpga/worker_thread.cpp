// SPDX-License-Identifier: Apache-2.0
#include "fpga/worker_thread.h"

#include "logging/channels/log_channels.h"
#include "panel/registers/register_access.h"
#include "threads/thread_sanitizer.h"

#include <QMutexLocker>

#include <chrono>

namespace buttondriver {

WorkerThread::WorkerThread(QMutex *mutex, TaskSemaphore *semaphore, TaskQueue *queue, std::atomic<bool> *running)
    : _mutex(mutex), _semaphore(semaphore), _queue(queue), _running(running) {
  // Takes effect on the calling thread, not on this one.
  setTerminationEnabled(true);
}

WorkerThread::~WorkerThread() { thread_sanitizer::happens_after(this); }

void WorkerThread::run() {
  for (;;) {
    if (!_semaphore->tryAcquire()) {
      LogChannels::ofProcess().writeBeforeWaiting();
      _semaphore->acquire();
    }
    if (!*_running)
      break;
    if (FPGATask *task = _queue->front()) {
      const QMutexLocker lock(_mutex);
      const std::uint32_t transfers_before = panel::spi_call_count;
      const auto start = std::chrono::steady_clock::now();
      task->execute();
      // What did not get to the device tells nothing of what its kind costs there.
      if (const std::uint32_t transfers = panel::spi_call_count - transfers_before; transfers > 0)
        _queue->costs().learn(task->kind(), task->keptBytes(), std::chrono::steady_clock::now() - start, transfers);
    }
    _queue->removeFront();
  }
  thread_sanitizer::happens_before(this);
}

} // namespace buttondriver
