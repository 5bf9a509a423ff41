// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"
#include "fuzz/support/connections/sent_stream.h"

#include <QByteArray>

#include <cstdint>

namespace buttondriver::fuzz {

/// What the sink answers to a ping.
inline constexpr char answer[] = "pingpong";
inline constexpr qint64 answer_size = sizeof answer - 1;

/// One client of the server, on a real connection that never waits.
class Client {
public:
  enum class State : std::uint8_t {
    open,
    finished, ///< has closed its side, and still reads
    read_out, ///< and has read the end of what the server sends
    left,     ///< has closed its socket, whatever was still to read
  };

  /// Connects from 127.0.0.`host`.
  Client(std::uint16_t port, std::uint8_t host);

  State state() const { return _state; }
  bool isGone() const { return _state == State::read_out || _state == State::left; }
  std::uint16_t port() const { return _port; }
  SentStream &sent() { return _sent; }
  qint64 answers() const { return _answer_bytes / answer_size; }
  /// When it left: whether the system had all that it sent.
  bool hasSystemAll() const { return _has_system_all; }

  void put(const QByteArray &bytes);
  /// Sends some of what was put, `most` bytes at most.
  void flush(qint64 most);
  bool hasMoreToSend() const { return !_waiting.isEmpty(); }
  void acknowledge();
  void readAnswers();
  void finish();
  /// What was put and not sent is lost.
  void leave(bool is_reset);

private:
  OwnedDescriptor _socket;
  State _state = State::open;
  std::uint16_t _port = 0;
  QByteArray _waiting;
  SentStream _sent;
  qint64 _answer_bytes = 0;
  bool _has_system_all = false;
};

} // namespace buttondriver::fuzz
