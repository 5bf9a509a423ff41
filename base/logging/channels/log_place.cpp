// SPDX-License-Identifier: Apache-2.0
#include "logging/channels/log_place.h"

#include "logging/channels/log_channel.h"

namespace buttondriver {

void LogPlace::write() {
  writeSome();
  changeState();
}

void LogPlace::finish() {
  endDropping();
  writeSome();
  Patience patience;
  while (_is_waiting && patience.waitFor(_descriptor))
    writeSome();
  _queue.clear();
  _is_waiting = false;
  _is_full = false;
}

void LogPlace::writeMuch() {
  writeSome();
  while (_queue.size() > most_waiting && !_is_dropping && _patience.waitFor(_descriptor))
    writeSome();
  changeState();
}

/// As much as can be written without waiting.
void LogPlace::writeSome() {
  _offered = 0;
  bool has_moved = !_is_waiting;
  _is_waiting = false;
  while (!_queue.isEmpty()) {
    const ssize_t written = _descriptor.writeSome(_queue.front());
    if (written == 0) {
      _is_waiting = true;
      break;
    }
    if (written < 0) {
      _queue.clear();
      _lost = 0;
      break;
    }
    _queue.removeFront(static_cast<std::size_t>(written));
    has_moved = true;
  }
  if (_is_waiting && has_moved)
    _waits_since = _clock();
}

void LogPlace::changeState() {
  if (_queue.size() <= low_mark) {
    _is_full = false;
    if (!_is_dropping)
      return;
    endDropping();
    writeSome();
  } else if (_queue.size() > full_mark) {
    if (isStuck())
      _is_full = false;
    else if (!_is_dropping)
      _is_full = true;
    if (!_is_full || _queue.size() > most_waiting)
      _is_dropping = true;
  }
}

void LogPlace::endDropping() {
  _is_dropping = false;
  if (_lost > 0)
    _queue.append(line_about_lost_texts(_lost));
  _lost = 0;
}

/// Whether the reader has let everybody wait for too long.
bool LogPlace::isStuck() const { return _is_waiting && _clock() - _waits_since >= stuck_after; }

} // namespace buttondriver
