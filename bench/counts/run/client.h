// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "counts/run/counted_daemon.h"
#include "soak/load/loopback_socket.h"

#include <QByteArray>

namespace buttondriver::counts {

/// A client of a counted daemon that sends when the daemon is parked, and lets it go on when all has arrived. Throws
/// std::runtime_error when the daemon does not get on.
class Client {
public:
  explicit Client(CountedDaemon &daemon);

  /// Sends the frames and waits until the daemon has done all that they ask for, and has sent so many answers to pings.
  void exchange(const QByteArray &frames, int answers);

private:
  void send(const QByteArray &frames);
  void receive(int answers);

  CountedDaemon &_daemon;
  soak::LoopbackSocket _socket;
};

} // namespace buttondriver::counts
