// SPDX-License-Identifier: Apache-2.0
#include "logging/channels/log_channels.h"

#include <cstdio>

namespace buttondriver {

LogChannels &LogChannels::ofProcess() {
  static LogChannels &channels = *new LogChannels; // never deleted: destructors of static objects may log
  return channels;
}

void LogChannels::write(Channel channel, std::string_view text) {
  const std::lock_guard lock(_mutex);
  if (!_is_gathering) {
    if (channel == Channel::error)
      return _error.write(text);
    // What the program has written with stdio so far goes first.
    std::fflush(stdout);
    return _output.write(text);
  }
  if (std::this_thread::get_id() == _gatherer)
    _gatherer_will_write = true;
  else
    _others_have_written.store(true, std::memory_order_relaxed);
  if (placeOf(channel).append(text))
    tellChanges();
}

void LogChannels::gather(const Gathering &how) {
  const LogDescriptor output = LogDescriptor::lookedAt(how.output);
  const LogDescriptor error = LogDescriptor::lookedAt(how.error);
  const std::lock_guard lock(_mutex);
  std::fflush(stdout);
  finishAll();
  _output_place.emplace(output, how.clock);
  if (!output.isSameFileAs(error))
    _error_place.emplace(error, how.clock);
  _tell = how.tell;
  _told = {};
  _gatherer = std::this_thread::get_id();
  _gatherer_will_write = true;
  _is_gathering = true;
}

void LogChannels::writeGathered() {
  const std::lock_guard lock(_mutex);
  if (std::this_thread::get_id() == _gatherer)
    _gatherer_will_write = false;
  writeAll();
}

void LogChannels::writeBeforeWaiting() {
  // Whatever the calling thread wrote itself it sees.
  if (!_others_have_written.load(std::memory_order_relaxed))
    return;
  const std::lock_guard lock(_mutex);
  if (_gatherer_will_write)
    return;
  writeAll();
  tellChanges();
}

LogChannels::Status LogChannels::status() {
  const std::lock_guard lock(_mutex);
  return _told = currentStatus();
}

void LogChannels::stopGathering() {
  const std::lock_guard lock(_mutex);
  finishAll();
}

void LogChannels::stopGatheringIfPossible() {
  const std::unique_lock lock(_mutex, std::try_to_lock);
  if (lock)
    finishAll();
}

LogPlace &LogChannels::placeOf(Channel channel) {
  return channel == Channel::error && _error_place ? *_error_place : *_output_place;
}

void LogChannels::writeAll() {
  _others_have_written.store(false, std::memory_order_relaxed);
  for (std::optional<LogPlace> *place : {&_output_place, &_error_place})
    if (*place)
      (*place)->write();
}

void LogChannels::finishAll() {
  for (std::optional<LogPlace> *place : {&_output_place, &_error_place}) {
    if (*place)
      (*place)->finish();
    place->reset();
  }
  _is_gathering = false;
  _tell = {};
}

LogChannels::Status LogChannels::currentStatus() const {
  Status status;
  int *waiting = status.waiting;
  for (const std::optional<LogPlace> *place : {&_output_place, &_error_place}) {
    if (*place && (*place)->isFull())
      status.is_full = true;
    if (*place && (*place)->isWaiting())
      *waiting = (*place)->descriptor().number();
    ++waiting;
  }
  return status;
}

void LogChannels::tellChanges() {
  const Status status = currentStatus();
  if (status == _told)
    return;
  _told = status;
  if (_tell)
    _tell();
}

} // namespace buttondriver
