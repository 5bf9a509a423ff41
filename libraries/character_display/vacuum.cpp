// SPDX-License-Identifier: Apache-2.0
#include "character_display/vacuum.h"

#include "character_display/character_display_register.h"

#include <QCoreApplication>
#include <QEvent>
#include <QStringList>

#include <chrono>
#include <utility>

namespace buttondriver {

namespace {

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
  std::unique_lock lock(_mutex);
  // Nobody keeps what is emitted before there is a writer. The thread ends without one when it cannot be started.
  while (!_writer_exists && isRunning())
    _writer_changed.wait_for(lock, std::chrono::milliseconds(200));
}

void Vacuum::run() {
  VacuumWriter writer(_register_base, _store);
  connect(this, &Vacuum::text_signal, &writer, &VacuumWriter::text, Qt::QueuedConnection);
  {
    const std::lock_guard lock(_mutex);
    _writer_exists = true;
  }
  _writer_changed.notify_one();
  exec();
  {
    const std::lock_guard lock(_mutex);
    _writer_exists = false;
  }
  // What was emitted before the end was asked for may not have been written yet.
  QCoreApplication::sendPostedEvents(&writer, QEvent::MetaCall);
}

} // namespace buttondriver
