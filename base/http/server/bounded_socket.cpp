// SPDX-License-Identifier: Apache-2.0
#include "http/server/bounded_socket.h"

namespace buttondriver {

BoundedSocket::BoundedSocket(qint64 most_unsent, QObject *parent) : QTcpSocket(parent), _most_unsent(most_unsent) {}

qint64 BoundedSocket::writeData(const char *bytes, qint64 size) {
  if (bytesToWrite() <= _most_unsent)
    return QTcpSocket::writeData(bytes, size);
  // Not at once: who writes does not expect the connection to end meanwhile.
  if (!_is_cut_off)
    QMetaObject::invokeMethod(
        this, [this] { abort(); }, Qt::QueuedConnection);
  _is_cut_off = true;
  return size;
}

} // namespace buttondriver
