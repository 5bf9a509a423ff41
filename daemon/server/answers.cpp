// SPDX-License-Identifier: Apache-2.0
#include "server/answers.h"

#include "logging/log_line.h"
#include "server/limits.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>

namespace buttondriver {

namespace {

/// Bytes that are put together for one call of the system, at least one answer.
constexpr qint64 bytes_at_once = 16 * 1024;

} // namespace

Answers::Answers(int descriptor) : _descriptor(descriptor) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

Answers::~Answers() = default;

qint64 Answers::writeData(const char *data, qint64 size) {
  if (size == 0 || (_descriptor < 0 && !_own))
    return size;
  const bool is_known =
      size == _answer.size() && std::memcmp(data, _answer.constData(), static_cast<std::size_t>(size)) == 0;
  if (!is_known && !takeAsOne(data, size))
    return size;
  if (_owed < limits::owed_answers) {
    ++_owed;
  } else if (!_has_dropped) {
    _has_dropped = true;
    critical_line() << "buttondriver: client reads no answers, further ones are dropped, descriptor" << _descriptor;
  }
  return size;
}

/// From now on this is the answer that is counted. False while others are owed: then it is dropped.
bool Answers::takeAsOne(const char *answer, qint64 size) {
  if (_owed > 0)
    send();
  if (_owed > 0)
    return false;
  _answer = QByteArray(answer, static_cast<int>(size));
  return true;
}

void Answers::send() {
  while (isOwing()) {
    if (_begun.isEmpty()) {
      _sent = 0;
      const qint64 count = std::clamp<qint64>(bytes_at_once / _answer.size(), 1, _owed);
      _begun = count == 1 ? _answer : _answer.repeated(static_cast<int>(count));
      _owed -= count;
    }
    if (!sendBegun())
      return;
  }
  _has_dropped = false;
  if (!_own)
    return;
  // It may be the one that called.
  _writable->setEnabled(false);
  _writable.release()->deleteLater();
  _own.reset();
  emit settled();
}

/// True when all of it is sent, or when nobody will ever take it.
bool Answers::sendBegun() {
  const int socket = _own ? _own.get() : _descriptor;
  while (!_begun.isEmpty()) {
    const auto left = static_cast<std::size_t>(_begun.size()) - _sent;
    const ssize_t sent = ::send(socket, _begun.constData() + _sent, left, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent > 0) {
      _sent += static_cast<std::size_t>(sent);
      if (static_cast<std::size_t>(sent) == left)
        _begun.clear();
    } else if (sent < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
      waitForRoom();
      return false;
    } else if (sent == 0 || errno != EINTR) {
      dropAll();
    }
  }
  return true;
}

void Answers::waitForRoom() {
  if (_own)
    return;
  // Of its own: the QTcpSocket closes the other one as soon as the client has closed its side.
  _own.reset(::fcntl(_descriptor, F_DUPFD_CLOEXEC, 0));
  if (!_own)
    return; // for want of descriptors; the next turn tries again
  _writable = std::make_unique<QSocketNotifier>(_own.get(), QSocketNotifier::Write);
  connect(_writable.get(), SIGNAL(activated(int)), this, SLOT(send()));
}

void Answers::dropAll() {
  _begun.clear();
  _owed = 0;
}

void Answers::socketIsGone() {
  _descriptor = -1;
  if (!_own)
    dropAll();
}

} // namespace buttondriver
