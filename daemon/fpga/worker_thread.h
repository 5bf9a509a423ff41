// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fpga/queue/task_queue.h"
#include "threads/task_semaphore.h"

#include <QMutex>
#include <QThread>

#include <atomic>

namespace buttondriver {

/// Carries out the facade's tasks, one at a time, in the order in which they were queued. The four objects belong to
/// the facade and outlive the thread.
class WorkerThread : public QThread {
  Q_OBJECT

public:
  WorkerThread(QMutex *mutex, TaskSemaphore *semaphore, TaskQueue *queue, std::atomic<bool> *running);
  /// Only when the thread has ended.
  ~WorkerThread() override;

protected:
  /// Serves one task for each release of the semaphore, until it finds the running flag false; what is still queued
  /// then stays where it is.
  void run() override;

private:
  QMutex *_mutex;
  TaskSemaphore *_semaphore;
  TaskQueue *_queue;
  std::atomic<bool> *_running;
};

} // namespace buttondriver
