// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "logging/channels/log_channels.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>

namespace buttondriver {

/// Has the log of this program gathered while it lives: texts are written together when a round of the event loop ends,
/// when another thread is about to wait, and whenever 16 KiB have come. Nobody waits for a reader that is slow:
/// up to 20 MiB wait for it, and the event loop writes them when it reads again. docs/reliability.md has the numbers.
///
/// Lives on the thread of the event loop, one object a process. When it ends, also by std::exit or by an exception that
/// nobody catches, all is written that the reader takes within a second; then each text is written at once again.
class LogGathering : public QObject {
  Q_OBJECT

public:
  /// What a test may have otherwise.
  struct Settings {
    int output = STDOUT_FILENO;
    int error = STDERR_FILENO;
    LogClock clock = std::chrono::steady_clock::now;
    int look_every_ms = 1000; ///< how often, while a reader is slow, somebody looks how long that has been so
  };

  LogGathering() : LogGathering(Settings()) {}
  explicit LogGathering(const Settings &settings);
  ~LogGathering() override;

signals:
  /// So much waits that nobody should bring more texts: more than 1 MiB.
  void full();
  /// No longer: the reader has read, or will not be waited for.
  void low();

private slots:
  void write();

private:
  void look();
  bool watch(std::unique_ptr<QSocketNotifier> &notifier, int descriptor);

  LogChannels &_channels = LogChannels::ofProcess();
  std::unique_ptr<QSocketNotifier> _notifiers[2]; // none until a reader is slow
  QTimer _timer;                                  // runs while a reader is slow
  bool _is_full = false;
};

} // namespace buttondriver
