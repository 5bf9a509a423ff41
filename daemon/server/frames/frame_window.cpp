// SPDX-License-Identifier: Apache-2.0
#include "server/frames/frame_window.h"

#include "bytes/byte_view.h"
#include "protocol/records.h"
#include "server/frames/message_room.h"

#include <QIODevice>

#include <algorithm>

namespace buttondriver {

namespace {

constexpr std::size_t opcode_size = 4;
constexpr quint32 ping_size = sizeof(BMS_Ping);
static_assert(ping_size == opcode_size);

/// What has to be seen of a frame to tell whether it is complete and of which kind it is.
constexpr std::size_t beginning_size = frame_prefix_size + opcode_size;
static_assert(limits::frame_window >= beginning_size);

} // namespace

FrameWindow::FrameWindow(QIODevice &stream) : _stream(stream), _left(stream.bytesAvailable()) { look(); }

FrameWindow::~FrameWindow() {
  // A socket gives away the memory of what is read as a whole, and keeps that of what is skipped: 16 KiB for each
  // connection, however long it is idle.
  if (_left == 0 && _begin > 0)
    _stream.read(static_cast<qint64>(_begin));
  else
    moveOn();
}

/// The stream begins with the first frame again.
void FrameWindow::moveOn() {
  if (_begin > 0)
    _stream.skip(static_cast<qint64>(_begin));
  _begin = 0;
  _end = 0;
}

void FrameWindow::look() {
  const std::size_t shown_size = _end - _begin;
  if (shown_size < beginning_size && static_cast<qint64>(shown_size) < _left) {
    moveOn();
    const qint64 peeked = _stream.peek(_window, std::min<qint64>(_left, sizeof _window));
    _end = static_cast<std::size_t>(std::max<qint64>(peeked, 0));
  }
  _head = frame_head(shown(), static_cast<quint64>(_left));
}

bool FrameWindow::isToBeTaken(FrameChoice choice) const {
  if (!_head.is_complete)
    return false;
  if (choice == FrameChoice::all || choice == FrameChoice::none)
    return choice == FrameChoice::all;
  const std::size_t size = std::min<std::size_t>(shown().size() - frame_prefix_size, _head.length);
  const ByteView beginning(shown().data() + frame_prefix_size, size);
  if (choice == FrameChoice::no_null_messages)
    return !asks_for_lines(beginning);
  return _head.length == ping_size && beginning.bigEndian32(0) == BMS_Ping::code;
}

void FrameWindow::take(QByteArray &message) {
  // Never more than is there: the length may have wrapped.
  const qint64 size = std::min<qint64>(_head.length, _left - frame_prefix_size);
  _left -= frame_prefix_size + size;
  const std::size_t begin = _begin + frame_prefix_size;
  if (size <= static_cast<qint64>(_end - begin)) {
    copy_to(message, _window + begin, static_cast<std::size_t>(size));
    _begin = begin + static_cast<std::size_t>(size);
  } else {
    // Copied once: large ones are pictures.
    _begin = begin;
    moveOn();
    message = _stream.read(size);
  }
  look();
}

} // namespace buttondriver
