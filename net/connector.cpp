#include "net/connector.h"

#include "logging/log_line.h"
#include "net/client_buttondriver.h"

#include <QHostAddress>
#include <QTcpSocket>

#include <algorithm>
#include <utility>

namespace buttondriver {

Connector::Connector(const QString &address, quint16 port, ButtonSetter *setter)
    : _address(address), _port(port), _setter(setter) {
  connect(&_server, SIGNAL(newConnection()), this, SLOT(newClient()));
}

Connector::~Connector() {
  // Before the server takes their sockets with it: each would report its end to a list that is no longer there.
  for (ClientButtondriver *client : std::exchange(_clients, {}))
    delete client;
}

bool Connector::listen() {
  QHostAddress address;
  if (_address.isEmpty())
    address = QHostAddress(QHostAddress::Any);
  return _server.listen(address, _port);
}

void Connector::newClient() {
  while (_server.hasPendingConnections()) {
    auto *client = new ClientButtondriver(this, _server.nextPendingConnection(), _setter); // this object owns it
    connect(client, &ClientButtondriver::closed, this, [this, client] { forget(client); });
    _clients.push_back(client);
    debug_line() << "buttondriver: new client";
  }
}

void Connector::forget(ClientButtondriver *client) {
  _clients.erase(std::remove(_clients.begin(), _clients.end(), client), _clients.end());
  client->deleteLater();
}

} // namespace buttondriver
