// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vacuum_writer.h"

#include <QString>
#include <QThread>

#include <condition_variable>
#include <mutex>

namespace buttondriver {

/// The character displays, two lines of 20 characters each. A thread of its own writes the characters, so that the
/// caller does not wait the millisecond that each of them takes.
///
/// Used from one thread, not its own. Destroying it writes what is still to be written, 41 ms for each text, and ends
/// the thread. After a quit() of the caller's own, wait() goes before the next setText(), which starts it again.
class Vacuum : public QThread {
  Q_OBJECT

public:
  /// `register_base` and `store` as in VacuumWriter. The thread is started by the first setText().
  Vacuum(QObject *parent, void *register_base, RegisterStore store = store_in_memory);
  ~Vacuum() override;

  /// Shows `text`: line 1, a line feed, line 2. A line is cut to 20 characters and filled up with blanks; a missing one
  /// is blank, further ones are dropped. `channel` selects the display, as in VacuumWriter. Does nothing when the
  /// last text was the same, whatever its channel. Waits for nothing but, if need be, the start of the thread.
  void setText(int channel, const QString &text);

Q_SIGNALS:
  /// First the home character alone, then the 40 characters.
  void text_signal(int channel, QString text);

protected:
  void run() override;

private:
  void startWriting();

  void *_register_base;
  RegisterStore _store;
  QString _last_text;

  std::mutex _mutex;
  std::condition_variable _writer_changed;
  /// Whether a writer gets what is emitted; under the mutex.
  bool _writer_exists = false;
};

} // namespace buttondriver
