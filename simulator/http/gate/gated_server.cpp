// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/gate/gated_server.h"

#include "simulator/http/gate/request_gate.h"

#include <QTcpSocket>

namespace buttondriver::simulator {

GatedServer::GatedServer(QObject *parent) : QTcpServer(parent) {}

bool GatedServer::listenOn(const QHostAddress &address, quint16 port) {
  _rule = AccessRule(address);
  return listen(address, port);
}

void GatedServer::incomingConnection(qintptr descriptor) {
  auto *socket = new QTcpSocket(this); // this object owns it until the connection ends
  socket->setSocketDescriptor(descriptor);
  if (findChildren<QTcpSocket *>(QString(), Qt::FindDirectChildrenOnly).size() > most_connections) {
    socket->abort();
    socket->deleteLater();
    return;
  }
  auto *gate = new RequestGate(socket, _rule); // the socket owns it
  connect(gate, &RequestGate::passed, this, [this, socket] {
    addPendingConnection(socket);
    emit newConnection();
  });
}

} // namespace buttondriver::simulator
