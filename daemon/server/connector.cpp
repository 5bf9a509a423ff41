// SPDX-License-Identifier: Apache-2.0
#include "server/connector.h"

#include "logging/log_line.h"
#include "server/client_buttondriver.h"
#include "server/limits.h"

#include <QHostAddress>
#include <QTcpSocket>

#include <algorithm>
#include <chrono>
#include <map>

namespace buttondriver {

namespace {

QHostAddress address_of(const ClientButtondriver *client) {
  const auto *socket = client->findChild<QTcpSocket *>();
  return socket ? socket->peerAddress() : QHostAddress();
}

/// Who has been silent longest of those that are connected and that `is_meant` is true for; null when there is none.
template <class IsMeant>
ClientButtondriver *most_silent(const std::vector<ClientButtondriver *> &clients, IsMeant is_meant) {
  ClientButtondriver *found = nullptr;
  for (ClientButtondriver *client : clients)
    if (client->connected() && (!found || client->lastHeard() < found->lastHeard()) && is_meant(client))
      found = client;
  return found;
}

/// The address that more than half of all clients come from; null when there is none.
QHostAddress main_address(const std::vector<ClientButtondriver *> &clients) {
  std::map<QString, std::size_t> counts;
  for (const ClientButtondriver *client : clients) {
    const QHostAddress address = address_of(client);
    if (2 * ++counts[address.toString()] > clients.size())
      return address;
  }
  return {};
}

} // namespace

Connector::Connector(const QString &address, quint16 port, ButtonSetter *setter, std::size_t places)
    : _address(address), _port(port), _setter(setter), _places(places),
      _turns([](ClientButtondriver *client) { client->takeTurn(); }),
      _ping_turns([](ClientButtondriver *client) { client->takeTurn(); }) {
  connect(&_server, &Listener::accepted, this, &Connector::newClient);
  _budget_timer.setInterval(limits::budget_retry_ms);
  _budget_timer.setSingleShot(true);
  connect(&_budget_timer, &QTimer::timeout, this, &Connector::giveAllATurn);
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
  return _server.start(address, _port);
}

void Connector::newClient() {
  while (QTcpSocket *socket = _server.takeNext()) {
    if (_clients.size() < _places || makeRoomFor(*socket))
      add(socket);
    else
      refuse(socket);
  }
}

void Connector::add(QTcpSocket *socket) {
  // This object owns it.
  auto *client = new ClientButtondriver(this, socket, _setter, &_budget);
  // The signal declared last comes first, which takes Qt the least memory.
  connect(client, &ClientButtondriver::closed, this, [this, client] { forget(client); });
  connect(client, &ClientButtondriver::wantsTurn, this, [this, client](bool has_to_wait) {
    if (has_to_wait)
      _turns.join(client);
    else
      giveTurn(client);
  });
  connect(client, &ClientButtondriver::tookTurn, this,
          [this, client](qint64 cost) { _turns.charge(client, std::chrono::nanoseconds(cost)); });
  connect(client, &ClientButtondriver::largeFrameEnded, this, &Connector::giveAllATurn);
  connect(client, &ClientButtondriver::waitsForBudget, this, [this] { _budget_timer.start(); });
  client->setDelivery(deliveryOf(client));
  _clients.push_back(client);
  debug_line() << "buttondriver: new client";
}

/// True when somebody has given up a place.
bool Connector::makeRoomFor(const QTcpSocket &newcomer) {
  ClientButtondriver *victim =
      most_silent(_clients, [](const ClientButtondriver *client) { return !client->hasSpoken(); });
  if (!victim) {
    const QHostAddress address = main_address(_clients);
    if (!address.isNull() && !address.isEqual(newcomer.peerAddress()))
      victim =
          most_silent(_clients, [&](const ClientButtondriver *client) { return address_of(client).isEqual(address); });
  }
  if (victim)
    victim->giveUp();
  return _clients.size() < _places;
}

void Connector::refuse(QTcpSocket *newcomer) {
  if (!_is_full_logged)
    critical_line() << "buttondriver: all places for clients are taken, further ones are refused, places"
                    << static_cast<qint64>(_places);
  _is_full_logged = true;
  newcomer->abort();
  newcomer->deleteLater();
}

void Connector::pauseReading() {
  _is_paused = true;
  _turns.stop();
  updateDeliveries();
}

void Connector::resumeReading() {
  _is_paused = false;
  goOn();
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
    giveTurn(client);
  }
}

void Connector::holdAllClients() {
  _is_everybody_held = true;
  _turns.stop();
  updateDeliveries();
}

void Connector::releaseAllClients() {
  _is_everybody_held = false;
  goOn();
}

void Connector::holdNullMessages() {
  _are_null_messages_held = true;
  updateDeliveries();
}

void Connector::releaseNullMessages() {
  _are_null_messages_held = false;
  updateDeliveries();
  giveAllATurn();
}

/// After a reason for everybody to wait has gone.
void Connector::goOn() {
  updateDeliveries();
  if (!isEverybodyWaiting())
    _turns.go();
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
  if (isEverybodyWaiting())
    return FrameChoice::leading_pings;
  return _are_null_messages_held ? FrameChoice::no_null_messages : FrameChoice::all;
}

/// After a reason to wait has come or gone.
void Connector::updateDeliveries() {
  for (ClientButtondriver *client : _clients)
    client->setDelivery(deliveryOf(client));
}

void Connector::giveTurn(ClientButtondriver *client) {
  _turns.join(client);
  if (isEverybodyWaiting())
    _ping_turns.join(client);
}

void Connector::giveAllATurn() {
  for (ClientButtondriver *client : _clients)
    giveTurn(client);
}

void Connector::forget(ClientButtondriver *client) {
  _clients.erase(std::remove(_clients.begin(), _clients.end(), client), _clients.end());
  _turns.forget(client);
  _ping_turns.forget(client);
  _held.erase(client);
  _is_full_logged = false;
  emit clientGone(client->clientId());
  client->deleteLater();
}

} // namespace buttondriver
