// SPDX-License-Identifier: Apache-2.0
#include "server/connector.h"

#include "logging/log_line.h"
#include "server/client_buttondriver.h"
#include "server/limits.h"

#include <QHostAddress>
#include <QTcpSocket>

#include <algorithm>

namespace buttondriver {

Connector::Connector(const QString &address, quint16 port, ButtonSetter *setter)
    : _address(address), _port(port), _setter(setter), _turns([](ClientButtondriver *client) { client->takeTurn(); }) {
  connect(&_server, &QTcpServer::newConnection, this, &Connector::newClient);
  connect(&_server, &QTcpServer::acceptError, this, &Connector::pauseAcceptingBriefly);
  _accept_timer.setInterval(limits::accept_retry_ms);
  _accept_timer.setSingleShot(true);
  connect(&_accept_timer, &QTimer::timeout, this, &Connector::newClient);
}

Connector::~Connector() {
  // Before the server and the lists go: a connection that ends now must not report to them any more.
  for (ClientButtondriver *client : _clients) {
    client->disconnect(this);
    delete client;
  }
}

bool Connector::listen() {
  QHostAddress address;
  if (_address.isEmpty())
    address = QHostAddress(QHostAddress::Any);
  return _server.listen(address, _port);
}

void Connector::newClient() {
  while (canAccept() && _server.hasPendingConnections()) {
    // This object owns it.
    auto *client = new ClientButtondriver(this, _server.nextPendingConnection(), _setter, &_budget);
    connect(client, &ClientButtondriver::wantsTurn, this, [this, client] { _turns.join(client); });
    connect(client, &ClientButtondriver::largeFrameEnded, this, &Connector::giveAllATurn);
    connect(client, &ClientButtondriver::closed, this, [this, client] { forget(client); });
    client->setDelivery(deliveryOf(client));
    _clients.push_back(client);
    debug_line() << "buttondriver: new client";
  }
  // To pause is not enough: the server goes on as long as somebody waits. With no place for those it stops at once.
  _server.setMaxPendingConnections(canAccept() ? 1 : 0);
  if (!_server.isListening() || _accept_timer.isActive())
    return;
  if (canAccept())
    _server.resumeAccepting();
  else
    _server.pauseAccepting();
}

bool Connector::canAccept() const { return !_is_paused && _clients.size() < limits::connections; }

void Connector::pauseReading() {
  _is_paused = true;
  updateDeliveries();
  newClient();
}

void Connector::resumeReading() {
  _is_paused = false;
  updateDeliveries();
  giveAllATurn();
  newClient();
}

void Connector::holdClient(qint32 client_id) {
  if (ClientButtondriver *client = find(client_id)) {
    _held.insert(client);
    client->setDelivery(deliveryOf(client));
  }
}

void Connector::releaseClient(qint32 client_id) {
  if (ClientButtondriver *client = find(client_id)) {
    _held.erase(client);
    client->setDelivery(deliveryOf(client));
    _turns.join(client);
  }
}

void Connector::holdAllClients() {
  _is_everybody_held = true;
  updateDeliveries();
}

void Connector::releaseAllClients() {
  _is_everybody_held = false;
  updateDeliveries();
  giveAllATurn();
}

/// Null when it is gone.
ClientButtondriver *Connector::find(qint32 client_id) const {
  const auto place = std::find_if(_clients.begin(), _clients.end(), [client_id](const ClientButtondriver *client) {
    return client->clientId() == client_id;
  });
  return place == _clients.end() ? nullptr : *place;
}

FrameChoice Connector::deliveryOf(ClientButtondriver *client) const {
  if (_held.count(client) > 0)
    return FrameChoice::none;
  return _is_paused || _is_everybody_held ? FrameChoice::leading_pings : FrameChoice::all;
}

/// After a reason to wait has come or gone.
void Connector::updateDeliveries() {
  for (ClientButtondriver *client : _clients)
    client->setDelivery(deliveryOf(client));
}

void Connector::giveAllATurn() { _turns.joinAll(_clients); }

void Connector::forget(ClientButtondriver *client) {
  _clients.erase(std::remove(_clients.begin(), _clients.end(), client), _clients.end());
  _turns.leave(client);
  _held.erase(client);
  emit clientGone(client->clientId());
  client->deleteLater();
  newClient();
}

/// The system refused a connection, for want of descriptors as a rule, and would refuse it again at once.
void Connector::pauseAcceptingBriefly() {
  _server.pauseAccepting();
  _accept_timer.start();
}

} // namespace buttondriver
