// SPDX-License-Identifier: Apache-2.0
#include "logging/log_gathering.h"

#include "threads/post.h"

#include <QAbstractEventDispatcher>

#include <cstdlib>
#include <exception>

namespace buttondriver {

namespace {

std::terminate_handler usual_end = nullptr;

void write_and_terminate() {
  LogChannels::ofProcess().stopGatheringIfPossible();
  usual_end();
}

/// Ends that pass by the destructor.
void prepare_for_other_ends() {
  static const bool is_registered = std::atexit([] { LogChannels::ofProcess().stopGathering(); }) == 0;
  static_cast<void>(is_registered);
  if (std::get_terminate() != write_and_terminate)
    usual_end = std::set_terminate(write_and_terminate);
}

} // namespace

LogGathering::LogGathering(const Settings &settings) {
  prepare_for_other_ends();
  _timer.setInterval(settings.look_every_ms);
  connect(&_timer, &QTimer::timeout, this, &LogGathering::write);
  connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this, &LogGathering::write);
  _channels.gather({settings.output, settings.error, settings.clock, [this] { post(this, [this] { look(); }); }});
}

LogGathering::~LogGathering() { _channels.stopGathering(); }

void LogGathering::write() {
  _channels.writeGathered();
  look();
}

void LogGathering::look() {
  const LogChannels::Status status = _channels.status();
  const bool first_waits = watch(_notifiers[0], status.waiting[0]);
  const bool second_waits = watch(_notifiers[1], status.waiting[1]);
  if (!first_waits && !second_waits)
    _timer.stop();
  else if (!_timer.isActive())
    _timer.start();
  if (status.is_full == _is_full)
    return;
  _is_full = status.is_full;
  if (_is_full)
    emit full();
  else
    emit low();
}

/// Has texts written when the reader of `descriptor` has room for them; -1 when none wait. True when some do.
bool LogGathering::watch(std::unique_ptr<QSocketNotifier> &notifier, int descriptor) {
  const bool waits = descriptor >= 0;
  if (waits && !notifier) {
    notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Write);
    // By name: the argument's type is not the same in Qt 5 and Qt 6.
    connect(notifier.get(), SIGNAL(activated(int)), this, SLOT(write()));
  } else if (notifier) {
    notifier->setEnabled(waits);
  }
  return waits;
}

} // namespace buttondriver
