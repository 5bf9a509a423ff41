// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/virtual_panel.h"
#include "simulator/device_link/device_protocol.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <cstdint>
#include <vector>

namespace buttondriver::simulator {

/// One connection to the device's socket: greets, and then carries out one transfer after the other. It holds no more
/// than one request and one answer, of at most device_protocol::most_words words. Lives on the event loop's thread.
class DriverSession : public QObject {
  Q_OBJECT

public:
  /// `descriptor` does not block and belongs to this object; `panel` outlives it.
  DriverSession(int descriptor, VirtualPanel &panel);
  ~DriverSession() override;

  /// Whether it has been made the driver.
  bool isDriver() const { return _state == State::driving; }
  /// Whether it has been, also when the connection has ended.
  bool hasDriven() const { return _has_driven; }
  /// Answers hello(): the connection drives the panel from now on, or it ends with an errno.
  void welcome(int error);

signals:
  /// Somebody who speaks the same protocol wants to drive the panel; welcome() is the answer.
  void hello();
  /// The connection has ended, by itself if `fault` is null, otherwise for this reason. Once only.
  void ended(const char *fault);

private slots:
  void take();
  void flush();

private:
  enum class State { greeting, driving, leaving, gone };

  void takeHello();
  void takeRequest();
  void carryOut();
  void answer(const void *head, std::size_t head_bytes, std::uint32_t words);
  void end(const char *fault);
  bool receive(void *place, std::size_t size);

  int _descriptor;
  VirtualPanel &_panel;
  State _state = State::greeting;
  bool _has_driven = false;
  QSocketNotifier _readable;
  QSocketNotifier _writable;
  std::size_t _received = 0; // bytes of what is awaited: a hello, a request, or its words
  bool _has_request = false; // its words are awaited
  device_protocol::Hello _hello{};
  device_protocol::Request _request{};
  std::vector<std::uint16_t> _words;
  QByteArray _unsent;
};

} // namespace buttondriver::simulator
