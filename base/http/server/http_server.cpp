// SPDX-License-Identifier: Apache-2.0
#include "http/server/http_server.h"

#include "http/server/bounded_socket.h"

#include <algorithm>
#include <utility>

namespace buttondriver {

namespace {

constexpr int endless = 2;

/// The less there is, the earlier a connection gives way to others.
int patience_with(const HttpConnection &connection) {
  switch (connection.state()) {
  case HttpConnection::State::receiving:
  case HttpConnection::State::refused:
    return 0;
  case HttpConnection::State::delivering:
    return 1;
  case HttpConnection::State::answering:
  case HttpConnection::State::handed_on:
    break;
  }
  return endless;
}

} // namespace

HttpServer::HttpServer(const HttpLimits &limits, QByteArray websocket_path)
    : _limits(limits), _websocket_path(std::move(websocket_path)) {}

Outcome<Done> HttpServer::listenOn(const HttpEndpoint &endpoint) {
  _rule = AccessRule(endpoint.address, _websocket_path);
  if (!listen(endpoint.address, endpoint.port))
    return Failure{errorString()};
  return Done{};
}

void HttpServer::incomingConnection(qintptr descriptor) {
  auto *socket = new BoundedSocket(_limits.most_unsent_bytes, this); // this object owns it until the connection ends
  socket->setSocketDescriptor(descriptor);
  if (!makeRoom()) {
    delete socket;
    return;
  }
  auto *connection = new HttpConnection(socket, _rule, _limits); // the socket owns it
  _connections.emplace_back(connection);
  connect(connection, &HttpConnection::requested, this,
          [this, connection](const RequestHead &head) { emit requested(head, HttpClient(connection)); });
  connect(connection, &HttpConnection::upgradeRequested, this, &HttpServer::upgradeRequested);
}

/// For a connection that has just come. Those that give way are deleted at once: many may come before the event loop
/// would get to it.
bool HttpServer::makeRoom() {
  const auto has_ended = [](const auto &connection) { return connection.isNull(); };
  _connections.erase(std::remove_if(_connections.begin(), _connections.end(), has_ended), _connections.end());
  if (findChildren<QTcpSocket *>(QString(), Qt::FindDirectChildrenOnly).size() <= _limits.most_connections)
    return true;
  // The first of those that compare equal is the oldest.
  const auto first =
      std::min_element(_connections.begin(), _connections.end(), [](const auto &left, const auto &right) {
        return patience_with(*left) < patience_with(*right);
      });
  if (first == _connections.end() || patience_with(**first) == endless)
    return false;
  delete (*first)->socket();
  return true;
}

} // namespace buttondriver
