// SPDX-License-Identifier: Apache-2.0
#include "simulator/device_link/driver_session.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

namespace buttondriver::simulator {

namespace protocol = device_protocol;

namespace {

QByteArray bytes_of(const void *start, std::size_t size) {
  return {static_cast<const char *>(start), static_cast<int>(size)};
}

/// What is wrong with the head of a request; null when nothing is. Whether a device would accept it is another
/// question.
const char *fault_of(const protocol::Request &request) {
  if (request.words != protocol::words_behind(request.code, request.record))
    return "a request whose words are not those of its record";
  if (request.record.count != 1 && request.record.value > 1)
    return "a request with an address";
  return nullptr;
}

} // namespace

DriverSession::DriverSession(int descriptor, VirtualPanel &panel)
    : _descriptor(descriptor), _panel(panel), _readable(descriptor, QSocketNotifier::Read),
      _writable(descriptor, QSocketNotifier::Write) {
  _writable.setEnabled(false);
  connect(&_readable, SIGNAL(activated(int)), this, SLOT(take()));
  connect(&_writable, SIGNAL(activated(int)), this, SLOT(flush()));
}

DriverSession::~DriverSession() {
  _readable.setEnabled(false);
  _writable.setEnabled(false);
  ::close(_descriptor);
}

void DriverSession::welcome(int error) {
  const protocol::Welcome welcome{protocol::magic, protocol::version, static_cast<std::uint32_t>(error)};
  _state = error == 0 ? State::driving : State::leaving;
  _has_driven = error == 0;
  answer(&welcome, sizeof welcome, 0);
}

void DriverSession::take() {
  if (_state == State::greeting)
    takeHello();
  else if (_state == State::driving)
    takeRequest();
}

void DriverSession::takeHello() {
  if (!receive(&_hello, sizeof _hello))
    return;
  if (_hello.magic != protocol::magic)
    end("a greeting in another language");
  else if (_hello.version != protocol::version)
    welcome(EPROTO);
  else
    emit hello();
}

void DriverSession::takeRequest() {
  if (!_has_request) {
    if (!receive(&_request, sizeof _request))
      return;
    if (const char *fault = fault_of(_request))
      return end(fault);
    _has_request = true;
    _words.assign(protocol::has_words(_request.code, _request.record) ? _request.record.count : 0, 0);
  }
  if (_request.words > 0 && !receive(_words.data(), _request.words * sizeof(std::uint16_t)))
    return;
  _has_request = false;
  carryOut();
}

void DriverSession::carryOut() {
  panel::TransferRecord record = _request.record;
  protocol::Answer answer_head{};
  if (record.count > protocol::most_words)
    answer_head.result = _panel.refuse("there are more words than any device takes", _request.code, record);
  else
    answer_head.result = _panel.transfer(_descriptor, _request.code, record, _words.empty() ? nullptr : _words.data());
  if (answer_head.result < 0)
    answer_head.error = static_cast<std::uint32_t>(errno);
  else if (record.count == 1)
    answer_head.value = record.value & 0xFFFF;
  else if (protocol::is_read(_request.code, record))
    answer_head.words = static_cast<std::uint32_t>(_words.size());
  answer(&answer_head, sizeof answer_head, answer_head.words);
}

void DriverSession::answer(const void *head, std::size_t head_bytes, std::uint32_t words) {
  _unsent = bytes_of(head, head_bytes) + bytes_of(_words.data(), words * sizeof(std::uint16_t));
  flush();
}

void DriverSession::flush() {
  while (!_unsent.isEmpty()) {
    const ssize_t sent =
        ::send(_descriptor, _unsent.constData(), static_cast<std::size_t>(_unsent.size()), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR)
      continue;
    if (sent < 0 && errno != EAGAIN)
      return end(nullptr);
    if (sent < 0)
      break;
    _unsent.remove(0, static_cast<int>(sent));
  }
  // The next request is looked at when the answer to this one has gone.
  _writable.setEnabled(!_unsent.isEmpty());
  _readable.setEnabled(_unsent.isEmpty());
  if (_unsent.isEmpty() && _state == State::leaving)
    end(nullptr);
}

void DriverSession::end(const char *fault) {
  if (_state == State::gone)
    return;
  _state = State::gone;
  _readable.setEnabled(false);
  _writable.setEnabled(false);
  emit ended(fault);
}

/// Goes on to fill `place` up to `size` bytes, of which `_received` are there. True when it is full.
bool DriverSession::receive(void *place, std::size_t size) {
  const ssize_t received = ::recv(_descriptor, static_cast<char *>(place) + _received, size - _received, 0);
  if (received < 0 && (errno == EAGAIN || errno == EINTR))
    return false;
  if (received <= 0) {
    end(nullptr);
    return false;
  }
  _received += static_cast<std::size_t>(received);
  if (_received < size)
    return false;
  _received = 0;
  return true;
}

} // namespace buttondriver::simulator
