// SPDX-License-Identifier: Apache-2.0
#include "server/listener.h"

#include "server/limits.h"

#include <cerrno>
#include <sys/socket.h>

namespace buttondriver {

namespace {

/// Connections that are accepted before others are served.
constexpr int at_once = 16;

} // namespace

Listener::Listener() {
  _retry.setInterval(limits::accept_retry_ms);
  _retry.setSingleShot(true);
  connect(&_retry, &QTimer::timeout, this, [this] { _somebody_waits->setEnabled(true); });
}

bool Listener::start(const QHostAddress &address, quint16 port) {
  if (!listen(address, port))
    return false;
  pauseAccepting(); // the base class does not, from now on
  _somebody_waits = std::make_unique<QSocketNotifier>(socketDescriptor(), QSocketNotifier::Read);
  connect(_somebody_waits.get(), SIGNAL(activated(int)), this, SLOT(acceptAll()));
  return true;
}

void Listener::acceptAll() {
  bool has_accepted = false;
  for (int count = 0; count < at_once; ++count) {
    const int descriptor =
        ::accept4(static_cast<int>(socketDescriptor()), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (descriptor >= 0) {
      incomingConnection(descriptor);
      has_accepted = true;
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      break;
    } else if (errno != EINTR && errno != ECONNABORTED) {
      // For want of descriptors or memory as a rule. It would refuse again at once.
      _somebody_waits->setEnabled(false);
      _retry.start();
      break;
    }
  }
  if (has_accepted)
    emit accepted();
}

} // namespace buttondriver
