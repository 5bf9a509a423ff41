// SPDX-License-Identifier: Apache-2.0
#include "character_display/vacuum.h"

#include "character_display/character_display_register.h"
#include "threads/thread_sanitizer.h"

#include <QStringList>

#include <utility>

namespace buttondriver {

namespace {

/// What a thread gets to make its writer, as often as it needs.
constexpr unsigned long start_ms = 200;

/// Both lines as the display has them, one after the other.
QString display_text(const QString &text) {
  const QStringList parts = text.split(QLatin1Char('\n'));
  QString result;
  for (int line = 0; line < character_display::lines; ++line)
    result += parts.value(line).leftJustified(character_display::columns, QLatin1Char(' '), true);
  return result;
}

} // namespace

Vacuum::Vacuum(QObject *parent, void *register_base, RegisterStore store)
    : QThread(parent), _register_base(register_base), _store(std::move(store)) {
  qRegisterMetaType<int>("int");
  qRegisterMetaType<QString>("QString");
}

Vacuum::~Vacuum() {
  quit();
  wait();
  thread_sanitizer::happens_after(this);
}

void Vacuum::setText(int channel, const QString &text) {
  if (!isRunning())
    startWriting();
  const QString shown = display_text(text);
  if (shown == _last_text)
    return;
  _last_text = shown;
  emit text_signal(channel, QString(QLatin1Char(character_display::home)));
  emit text_signal(channel, shown);
}

void Vacuum::startWriting() {
  start(QThread::HighestPriority);
  // Nobody keeps what is emitted before there is a writer. The thread has ended when it cannot be started.
  bool has_ended = wait(start_ms);
  while (!has_ended && !_writer_exists)
    has_ended = wait(start_ms);
}

void Vacuum::run() {
  {
    VacuumWriter writer(_register_base, _store);
    connect(this, &Vacuum::text_signal, &writer, &VacuumWriter::text, Qt::QueuedConnection);
    _writer_exists = true;
    exec();
    _writer_exists = false;
  }
  thread_sanitizer::happens_before(this);
}

} // namespace buttondriver
