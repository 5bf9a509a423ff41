// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "file_watch/configuration_watcher.h"
#include "files/system_paths.h"
#include "fpga/font_settings.h"
#include "fpga/queue/task_queue.h"
#include "fpga/tasks.h"
#include "threads/task_semaphore.h"

#include <QMutex>
#include <QObject>
#include <QString>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

namespace buttondriver {

class WorkerThread;

/// The one way to the panel's hardware. Each operation queues a task and returns at once; one worker thread carries the
/// tasks out in order. Nothing is reported back: wrong arguments are printed when the task runs. Also follows the
/// launcher configuration, which chooses the font of the screens.
///
/// One object a process. All operations are called on the thread that made it, which runs an event loop.
class FPGA : public QObject {
  Q_OBJECT

public:
  /// Opens the device, loads the configured font, starts the worker and queues a blackout of all screens. Works
  /// without a device and without a font too.
  explicit FPGA(const SystemPaths &paths = {}, const QueueMarks &marks = {});
  /// Waits for the task that is being carried out; those still queued are deleted.
  ~FPGA() override;

  /// `flag` true: white on black; false: black on white.
  void textLine(int screen_id, int line_id, std::string_view text, bool flag) {
    queueTask<TextLineTask>(screen_id, line_id, text, flag);
  }
  void subTextLine(int screen_id, int line_id, int offset, int num_chars, std::string_view text,
                   std::uint32_t text_colour, std::uint32_t back_colour) {
    queueTask<SubTextLineTask>(screen_id, line_id, offset, num_chars, text, text_colour, back_colour);
  }
  void setLEDButtonState(int led_id, int state) { queueTask<SetLEDButtonStateTask>(led_id, state); }
  void setLEDStatusIndicator(int led_id, int state) { queueTask<SetLEDStatusIndicatorTask>(led_id, state); }
  void setLEDToggleIndicator(unsigned indicator, unsigned state) {
    queueTask<SetLEDToggleIndicatorTask>(indicator, state);
  }
  /// -1 means every screen.
  void blackoutScreen(int screen_id) { queueTask<BlackoutScreenTask>(screen_id); }
  void drawTFTImage(int screen_id, int x_offset, int y_offset, SharedBytes bmp) {
    queueTask<DrawTFTImageTask>(screen_id, x_offset, y_offset, std::move(bmp));
  }
  /// The same for a picture that is as long as it claims itself; all of that is copied at once. May be null.
  void drawTFTImage(int screen_id, int x_offset, int y_offset, const std::uint8_t *bmp) {
    drawTFTImage(screen_id, x_offset, y_offset, SharedBytes::copyOf(panel::bmp_claimed_bytes(bmp)));
  }
  void setTFTIntensity(int percent) { queueTask<SetTFTIntensityTask>(percent); }

  /// Queues a task of the caller's own, after all that were queued before.
  void queue(std::unique_ptr<FPGATask> task);
  /// How many tasks are not finished yet, the one that is being carried out among them.
  std::size_t queueLength() const { return _queue.size(); }

  /// What these are expected to take.
  std::chrono::nanoseconds queuedTime() const { return _queue.time(); }
  /// How long the worker is expected to need for a task of this kind that keeps so many bytes alive.
  std::chrono::nanoseconds timeOf(TaskKind kind, std::size_t bytes = 0) const { return _queue.costs().of(kind, bytes); }

  /// Calls `work`. What that queues counts as the timer's and not as the clients': they need not pause for it.
  template <class Work> void queueForTimer(Work work) {
    _origin = TaskOrigin::timer;
    work();
    _origin = TaskOrigin::client;
  }
  /// Whether so much waits that the timer should queue nothing more. It is more than that for which clients pause.
  bool isFull() const { return _queue.isFull(); }

signals:
  /// More waits for the worker than should: whoever brings work should pause. Nothing that is queued is refused.
  void backlogHigh();
  /// The backlog that was high has been worked off far enough to go on.
  void backlogLow();

public slots:
  /// Reads the font's size from the configuration at `path` and loads that font when the size has changed.
  void check_font_settings(const QString &path);

private:
  template <class Task, class... Arguments> void queueTask(Arguments &&...arguments) {
    tellQueued(_queue.emplace<Task>(_origin, std::forward<Arguments>(arguments)...));
  }
  void tellQueued(bool is_high_now);

  SystemPaths _paths;
  std::atomic<bool> _running{false};
  std::unique_ptr<WorkerThread> _worker;
  QMutex _mutex;
  TaskSemaphore _semaphore;
  TaskQueue _queue;
  TaskOrigin _origin = TaskOrigin::client; // of what is queued now
  ConfigurationWatcher _watcher;
  FontSettings _font;
};

} // namespace buttondriver
