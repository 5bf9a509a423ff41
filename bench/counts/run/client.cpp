// SPDX-License-Identifier: Apache-2.0
#include "counts/run/client.h"

#include <algorithm>
#include <stdexcept>
#include <thread>

namespace buttondriver::counts {

Client::Client(CountedDaemon &daemon) : _daemon(daemon), _socket(daemon.port()) { _daemon.waitUntilParked(); }

void Client::exchange(const QByteArray &frames, int answers) {
  send(frames);
  _daemon.run();
  receive(answers);
}

void Client::send(const QByteArray &frames) {
  const std::string_view bytes(frames.constData(), static_cast<std::size_t>(frames.size()));
  if (_socket.send(bytes) != bytes.size())
    throw std::runtime_error("the kernel does not take so much at once");
  // The kernel tells nobody; it takes no longer than a packet within this machine.
  while (!_socket.hasArrived())
    std::this_thread::yield();
}

void Client::receive(int answers) {
  constexpr std::size_t answer_size = 8;
  constexpr int limit_ms = 60'000;
  char bytes[4096];
  for (std::size_t left = answer_size * static_cast<std::size_t>(answers); left > 0;) {
    const std::size_t count = _socket.receive(bytes, std::min(left, sizeof bytes));
    left -= count;
    if (!_socket.isOpen() || (count == 0 && !_socket.waitForData(limit_ms)))
      throw std::runtime_error("the daemon does not answer");
  }
}

} // namespace buttondriver::counts
