// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vacuum_writer.h"

#include <QString>
#include <QThread>

#include <atomic>

namespace buttondriver {

/// The character displays, two lines of 20 characters each. A thread of its own writes the characters, so that the
/// caller does not wait the millisecond that each of them takes.
///
/// Used from one thread, not its own. Destroying it ends the thread. After a quit(), the caller's own or that of the
/// end, nothing more is written than what the thread's event loop had begun with; what was emitted and has not been
/// written is lost. After a quit() of the caller's own, wait() goes before the next setText(), which starts the thread
/// again.
class Vacuum : public QThread {
  Q_OBJECT

public:
  /// `register_base` and `store` as in VacuumWriter. The thread is started by the first setText().
  Vacuum(QObject *parent, void *register_base, RegisterStore store = store_in_memory);
  ~Vacuum() override;

  /// Shows `text`: line 1, a line feed, line 2. A line is cut to 20 characters and filled up with blanks; a missing one
  /// is blank, further ones are dropped. `channel` selects the display, as in VacuumWriter. Does nothing when the
  /// last text was the same, whatever its channel. A call that starts the thread takes 200 ms, or longer when the
  /// thread is longer in coming; all others wait for nothing.
  void setText(int channel, const QString &text);

Q_SIGNALS:
  /// First the home character alone, then the 40 characters.
  void text_signal(int channel, QString text);

protected:
  /// The thread: writes the texts until the object goes.
  void run() override;

private:
  void startWriting();

  void *_register_base;
  RegisterStore _store;
  QString _last_text;

  /// Whether a writer gets what is emitted.
  std::atomic<bool> _writer_exists{false};
};

} // namespace buttondriver
