// SPDX-License-Identifier: Apache-2.0
#include "fpga/worker_thread.h"

#include <QMutexLocker>

namespace buttondriver {

WorkerThread::WorkerThread(QMutex *mutex, TaskSemaphore *semaphore, TaskQueue *queue, std::atomic<bool> *running)
    : _mutex(mutex), _semaphore(semaphore), _queue(queue), _running(running) {
  // Takes effect on the calling thread, not on this one.
  setTerminationEnabled(true);
}

WorkerThread::~WorkerThread() { thread_sanitizer::happens_after(this); }

void WorkerThread::run() {
  for (;;) {
    _semaphore->acquire();
    if (!*_running)
      break;
    if (FPGATask *task = _queue->front()) {
      const QMutexLocker lock(_mutex);
      task->execute();
    }
    _queue->removeFront();
  }
  thread_sanitizer::happens_before(this);
}

} // namespace buttondriver
