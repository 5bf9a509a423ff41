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
  // The base class does nothing from now on. It would begin again when it were asked for a pending connection.
  pauseAccepting();
  _somebody_waits = std::make_unique<QSocketNotifier>(socketDescriptor(), QSocketNotifier::Read);
  connect(_somebody_waits.get(), SIGNAL(activated(int)), this, SLOT(acceptAll()));
  return true;
}

QTcpSocket *Listener::takeNext() {
  if (_accepted.empty())
    return nullptr;
  QTcpSocket *const socket = _accepted.front();
  _accepted.pop_front();
  return socket;
}

void Listener::acceptAll() {
  for (int count = 0; count < at_once; ++count) {
    const int descriptor =
        ::accept4(static_cast<int>(socketDescriptor()), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (descriptor >= 0) {
      auto *socket = new QTcpSocket(this);
      socket->setSocketDescriptor(descriptor);
      _accepted.push_back(socket);
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      break;
    } else if (errno != EINTR && errno != ECONNABORTED) {
      // For want of descriptors or memory as a rule. It would refuse again at once.
      _somebody_waits->setEnabled(false);
      _retry.start();
      break;
    }
  }
  if (!_accepted.empty())
    emit accepted();
}

} // namespace buttondriver
