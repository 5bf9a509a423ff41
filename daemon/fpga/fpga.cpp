// SPDX-License-Identifier: Apache-2.0
#include "fpga/fpga.h"

#include "dimensions/panel_dimensions.h"
#include "fpga/worker_thread.h"
#include "logging/log_line.h"
#include "panel/formats/font.h"
#include "panel/panel_lib.h"
#include "threads/post.h"

#include <QFile>
#include <QMutexLocker>

#include <optional>

namespace buttondriver {

namespace {

constexpr unsigned long worker_wait_ms = 2000;

QString to_qstring(const std::string &path) { return QFile::decodeName(path.c_str()); }

} // namespace

FPGA::FPGA(const SystemPaths &paths, const QueueMarks &marks)
    : _paths(paths), _queue(marks,
                            [this] {
                              // From the worker to the main thread; by then the queue may be high again.
                              post(this, [this] {
                                if (!_queue.isHigh())
                                  emit backlogLow();
                              });
                            }),
      _watcher(to_qstring(paths.launcher_configuration)) {
  panel::panel_lib_init();
  check_font_settings(to_qstring(_paths.launcher_configuration));
  debug_line() << "Files being watched: " << _watcher.files();
  connect(&_watcher, &ConfigurationWatcher::fileChanged, this, &FPGA::check_font_settings);
  _running = true;
  _worker = std::make_unique<WorkerThread>(&_mutex, &_semaphore, &_queue, &_running);
  _worker->start(QThread::InheritPriority);
  blackoutScreen(dimensions::all_screens);
}

FPGA::~FPGA() {
  _running = false;
  _semaphore.release();
  while (_worker->isRunning())
    _worker->wait(worker_wait_ms);
  _worker.reset();
}

void FPGA::queue(std::unique_ptr<FPGATask> task) { tellQueued(_queue.append(std::move(task), _origin)); }

void FPGA::tellQueued(bool is_high_now) {
  _semaphore.release();
  if (is_high_now)
    emit backlogHigh();
}

void FPGA::check_font_settings(const QString &path) {
  debug_line() << "File change in " << path << " occurred.";
  const std::optional<FontSettings> settings = read_font_settings(path);
  if (!settings) {
    debug_line() << "Error accessing '" << path << "' for reading";
    return;
  }
  if (*settings == _font)
    return;
  _font = *settings;
  const QString font =
      QStringLiteral("%1/%2x%3.pcf.gz")
          .arg(to_qstring(_paths.font_directory), QString::number(_font.width), QString::number(_font.height));

  // The worker would take the mutex again before this thread wakes up; so it is stopped at its queue.
  const auto hold = _queue.hold();
  QMutexLocker lock(&_mutex);
  debug_line() << "buttondriver: Loading font '" << font << "' from configuration file.";
  if (panel::font_load(QFile::encodeName(font).constData()) == -1) {
    debug_line() << "Error loading font '" << font << "' from configuration file.";
    return;
  }
  lock.unlock();
  debug_line() << "buttondriver: Successfully changed to font " << font;
}

} // namespace buttondriver
